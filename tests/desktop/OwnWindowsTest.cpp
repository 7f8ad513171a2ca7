// Our windows among those of others, under a window manager that guards the keyboard. What came of
// it is asked of programs that are not ours. Started with "other", this is another program.

#include "platform/freedesktop/FreedesktopDesktop.h"

#include <QApplication>
#include <QLineEdit>
#include <QProcess>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>
#include <QWindow>

#include <cstdlib>
#include <memory>
#include <xcb/xcb.h>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int patience = 20'000; // milliseconds

QString outputOf(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    process.waitForFinished();
    return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
}

QString propertyOf(WId window, const QString &name)
{
    return outputOf(u"xprop"_s, { u"-id"_s, QString::number(window), name });
}

WId namedWindow()
{
    const QString text = outputOf(u"xprop"_s, { u"-root"_s, u"_NET_ACTIVE_WINDOW"_s });
    return WId(text.section(u"# "_s, -1).toULongLong(nullptr, 16));
}

// A program that has been typed into a moment ago, which makes its window the one that the user
// wants to go on with.
class OtherProgram
{
public:
    OtherProgram()
    {
        _process.start(QCoreApplication::applicationFilePath(), { u"other"_s });
        _process.waitForReadyRead();
        _window = _process.readLine().trimmed().toULongLong();
    }
    ~OtherProgram()
    {
        _process.kill();
        _process.waitForFinished();
    }
    WId window() const { return _window; }
    // What has been typed is its title.
    QString text() const { return propertyOf(_window, u"_NET_WM_NAME"_s).section(u'"', 1, 1); }
    void activate() const { outputOf(u"wmctrl"_s, { u"-ia"_s, u"0x%1"_s.arg(_window, 0, 16) }); }

private:
    QProcess _process;
    WId _window = 0;
};

int beOtherProgram()
{
    QLineEdit edit;
    QObject::connect(&edit, &QLineEdit::textChanged, &edit, &QWidget::setWindowTitle);
    edit.show();
    QTextStream(stdout) << edit.winId() << Qt::endl;
    return QApplication::exec();
}

// As the shown program makes its own.
class Panel : public QLineEdit
{
public:
    Panel()
    {
        setWindowFlags(Qt::Window | Qt::FramelessWindowHint);
        setAttribute(Qt::WA_TranslucentBackground);
        setWindowTitle(u"Ortu"_s);
        resize(200, 100);
        winId();
    }
    QWindow &window() const { return *windowHandle(); }
};

// A client of the display that has nothing to do with the toolkit.
class Client
{
public:
    Client()
        : _connection(xcb_connect(nullptr, nullptr))
        , _root(xcb_setup_roots_iterator(xcb_get_setup(_connection)).data->root)
        , _window(xcb_generate_id(_connection))
    {
        const uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_create_window(_connection, XCB_COPY_FROM_PARENT, _window, _root, 0, 0, 1, 1, 0,
            XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &mask);
        xcb_change_window_attributes(_connection, _root, XCB_CW_EVENT_MASK, &mask);
    }
    ~Client() { xcb_disconnect(_connection); }
    Q_DISABLE_COPY_MOVE(Client)

    quint32 time()
    {
        xcb_change_property(_connection, XCB_PROP_MODE_APPEND, _window, XCB_ATOM_WM_NAME,
            XCB_ATOM_STRING, 8, 0, nullptr);
        xcb_flush(_connection);
        quint32 time = 0;
        while (xcb_generic_event_t *const event = xcb_wait_for_event(_connection)) {
            const auto *const change = reinterpret_cast<xcb_property_notify_event_t *>(event);
            const bool isAnswer =
                (event->response_type & 0x7f) == XCB_PROPERTY_NOTIFY && change->window == _window;
            time = change->time;
            std::free(event);
            if (isAnswer) {
                return time;
            }
        }
        return 0;
    }
    bool grabKeyboard()
    {
        xcb_grab_keyboard_reply_t *const reply = xcb_grab_keyboard_reply(_connection,
            xcb_grab_keyboard(
                _connection, 0, _root, XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC),
            nullptr);
        const bool isGrabbed = reply != nullptr && reply->status == XCB_GRAB_STATUS_SUCCESS;
        std::free(reply);
        return isGrabbed;
    }
    // The messages that have come in, one after the other.
    QByteArray messages()
    {
        while (xcb_generic_event_t *const event = xcb_poll_for_event(_connection)) {
            if ((event->response_type & 0x7f) == XCB_CLIENT_MESSAGE) {
                const auto *const part = reinterpret_cast<xcb_client_message_event_t *>(event);
                _messages.append(reinterpret_cast<const char *>(part->data.data8), 20);
            }
            std::free(event);
        }
        return _messages;
    }

private:
    xcb_connection_t *_connection;
    xcb_window_t _root;
    xcb_window_t _window;
    QByteArray _messages;
};

using OnTaskBar = OwnWindows::TaskBar;
using Level = OwnWindows::Level;

} // namespace

class OwnWindowsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void standing_holdsEachTimeAWindowIsShown_data();
    void standing_holdsEachTimeAWindowIsShown();
    void level_changesWhileAWindowIsShown();
    void activation_takesTheKeyboardFromWhatIsBeingTypedInto_data();
    void activation_takesTheKeyboardFromWhatIsBeingTypedInto();
    void startupId_isAnsweredAndNotUsedAgain();
    void activeWindow_isToldWhenItReallyChanges();

private:
    OwnWindows &own() const { return _desktop->ownWindows(); }
    static QStringList states(const Panel &panel);

    std::unique_ptr<Desktop> _desktop;
};

void OwnWindowsTest::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
    _desktop = makeFreedesktopDesktop();
}

void OwnWindowsTest::cleanup()
{
    _desktop.reset();
}

// Those that are asked for, sorted; with the desktop, where it is every one.
QStringList OwnWindowsTest::states(const Panel &panel)
{
    const QString text = propertyOf(panel.winId(), u"_NET_WM_STATE"_s);
    QStringList states;
    for (const char *name : { "ABOVE", "SKIP_PAGER", "SKIP_TASKBAR" }) {
        // Once, as more would be a mistake of ours.
        if (text.count(QLatin1String(name)) == 1) {
            states.append(QLatin1String(name));
        }
    }
    if (propertyOf(panel.winId(), u"_NET_WM_DESKTOP"_s).endsWith(u"= 4294967295"_s)) {
        states.append(u"everywhere"_s);
    }
    return states;
}

void OwnWindowsTest::standing_holdsEachTimeAWindowIsShown_data()
{
    QTest::addColumn<bool>("isRested");
    QTest::newRow("after a while") << true;
    // The window manager has not yet taken note that the window was hidden.
    QTest::newRow("at once") << false;
}

void OwnWindowsTest::standing_holdsEachTimeAWindowIsShown()
{
    QFETCH(bool, isRested);
    Panel panel;
    const QStringList raised { u"ABOVE"_s, u"everywhere"_s };
    const QStringList skipped { u"SKIP_PAGER"_s, u"SKIP_TASKBAR"_s, u"everywhere"_s };
    for (int i = 0; i < 3; ++i) {
        own().setStanding(panel.window(), OnTaskBar::Skipped, Level::Normal);
        panel.show();
        QTRY_COMPARE(states(panel), skipped);
        panel.hide();
        if (isRested) {
            QTRY_VERIFY(!propertyOf(panel.winId(), u"WM_STATE"_s).contains(u"Normal"_s));
        }
        own().setStanding(panel.window(), OnTaskBar::Listed, Level::Raised);
        panel.show();
        QTRY_COMPARE(states(panel), raised);
        panel.hide();
    }
}

void OwnWindowsTest::level_changesWhileAWindowIsShown()
{
    Panel panel;
    own().setStanding(panel.window(), OnTaskBar::Listed, Level::Raised);
    panel.show();
    // The last word counts, however soon it comes.
    own().setLevel(panel.window(), Level::Normal);
    QTRY_COMPARE(states(panel), QStringList(u"everywhere"_s));
    for (int i = 0; i < 2; ++i) {
        own().setLevel(panel.window(), Level::Raised);
        QTRY_COMPARE(states(panel), QStringList({ u"ABOVE"_s, u"everywhere"_s }));
        own().setLevel(panel.window(), Level::Normal);
        QTRY_COMPARE(states(panel), QStringList(u"everywhere"_s));
    }
}

void OwnWindowsTest::activation_takesTheKeyboardFromWhatIsBeingTypedInto_data()
{
    QTest::addColumn<bool>("isAsked");
    QTest::addColumn<bool>("isTimeKnown");
    QTest::addColumn<bool>("isShownBefore");
    QTest::newRow("with the time") << true << true << true;
    QTest::newRow("without") << true << false << true;
    QTest::newRow("asked for before it is shown") << true << false << false;
    // What we are up against: left to itself, the panel is refused.
    QTest::newRow("not asked for") << false << false << true;
}

void OwnWindowsTest::activation_takesTheKeyboardFromWhatIsBeingTypedInto()
{
    QFETCH(bool, isAsked);
    QFETCH(bool, isTimeKnown);
    QFETCH(bool, isShownBefore);
    Client client;
    Panel panel;
    // A window of a program that nobody is working with gets the keyboard least of all.
    Panel idle;
    idle.show();
    QTRY_COMPARE(namedWindow(), idle.winId());
    const int times = isAsked ? 3 : 1;
    for (int i = 1; i <= times; ++i) {
        const OtherProgram other;
        QTRY_COMPARE_WITH_TIMEOUT(namedWindow(), other.window(), patience);
        outputOf(u"xdotool"_s, { u"key"_s, u"a"_s });
        QTRY_COMPARE(other.text(), u"a"_s);
        const ActivationStamp stamp { isTimeKnown ? client.time() : 0, {} };
        own().setStanding(panel.window(), OnTaskBar::Skipped, Level::Normal);
        if (isShownBefore) {
            panel.show();
        }
        if (isAsked) {
            own().activate(panel.window(), stamp);
        }
        panel.show();
        if (isAsked) {
            QTRY_COMPARE(own().activeWindow(), &panel.window());
            QCOMPARE(namedWindow(), panel.winId());
            outputOf(u"xdotool"_s, { u"key"_s, u"b"_s });
            QTRY_COMPARE(panel.text(), QString(i, u'b'));
        } else {
            // Once this has come about, the window manager has dealt with what was before.
            own().setLevel(panel.window(), Level::Raised);
            QTRY_VERIFY(states(panel).contains(u"ABOVE"_s));
            QCOMPARE(namedWindow(), other.window());
        }
        panel.hide();
        QTRY_COMPARE(namedWindow(), other.window());
        QTRY_COMPARE(own().activeWindow(), nullptr);
    }
}

void OwnWindowsTest::startupId_isAnsweredAndNotUsedAgain()
{
    Client client;
    Panel panel;
    const OtherProgram other;
    QTRY_COMPARE_WITH_TIMEOUT(namedWindow(), other.window(), patience);
    outputOf(u"xdotool"_s, { u"key"_s, u"a"_s });
    QTRY_COMPARE(other.text(), u"a"_s);
    const QString id = u"else-1-\"here\"_TIME%1"_s.arg(client.time());
    own().setStanding(panel.window(), OnTaskBar::Listed, Level::Normal);
    panel.show();
    own().activate(panel.window(), { 0, id });
    QTRY_COMPARE(own().activeWindow(), &panel.window());
    const auto startupId = [&panel] { return propertyOf(panel.winId(), u"_NET_STARTUP_ID"_s); };
    QTRY_VERIFY(startupId().contains(u"else-1-"_s));
    QString quoted = id;
    const QByteArray message =
        "remove: ID=\"" + quoted.replace(u"\""_s, u"\\\""_s).toUtf8() + '"' + '\0';
    QTRY_VERIFY(client.messages().contains(message));
    panel.hide();
    own().setStanding(panel.window(), OnTaskBar::Listed, Level::Normal);
    panel.show();
    QTRY_VERIFY(!startupId().contains(u"else-1-"_s));
}

void OwnWindowsTest::activeWindow_isToldWhenItReallyChanges()
{
    Panel panel;
    Panel second;
    QList<QWindow *> told;
    connect(
        &own(), &OwnWindows::activeWindowChanged, this, [&] { told.append(own().activeWindow()); });
    const QList<QWindow *> none { nullptr };
    const auto isNamed = [](const Panel &one) { return namedWindow() == one.winId(); };
    {
        panel.show();
        // With the time: to ask for it would be a request under way while this waits for programs.
        own().activate(panel.window(), { Client().time(), {} });
        QTRY_COMPARE(told, QList<QWindow *> { &panel.window() });
        told.clear();
        const OtherProgram other;
        QTRY_VERIFY_WITH_TIMEOUT(
            propertyOf(other.window(), u"WM_STATE"_s).contains(u"Normal"_s), patience);
        other.activate();
        QTRY_COMPARE_WITH_TIMEOUT(told, none, patience);
        told.clear();
        own().activate(panel.window(), {});
        QTRY_COMPARE(told, QList<QWindow *> { &panel.window() });
        told.clear();
        {
            // The toolkit loses its window, and we do not.
            Client client;
            QVERIFY(client.grabKeyboard());
            QTRY_COMPARE(QGuiApplication::focusWindow(), nullptr);
            QCOMPARE(own().activeWindow(), &panel.window());
        }
        QTRY_COMPARE(QGuiApplication::focusWindow(), &panel.window());
        QCOMPARE(told, {});

        // From one of ours to the other one, and back when that goes.
        second.show();
        own().activate(second.window(), {});
        QTRY_COMPARE(told, QList<QWindow *> { &second.window() });
        second.hide();
        QTRY_COMPARE(told, QList<QWindow *>({ &second.window(), &panel.window() }));
        told.clear();
        panel.hide();
        QTRY_COMPARE(told, none);
        QTRY_COMPARE(namedWindow(), other.window());
    }
    told.clear();
    panel.show();
    own().activate(panel.window(), {});
    QTRY_VERIFY(isNamed(panel));
    QTRY_COMPARE(told, QList<QWindow *> { &panel.window() });
    // With nobody to follow.
    panel.hide();
    QTRY_COMPARE(told, QList<QWindow *>({ &panel.window(), nullptr }));
    QCOMPARE(own().activeWindow(), nullptr);
}

int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    if (QCoreApplication::arguments().contains(u"other"_s)) {
        return beOtherProgram();
    }
    OwnWindowsTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "OwnWindowsTest.moc"
