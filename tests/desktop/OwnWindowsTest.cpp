// Our windows among those of other programs, under a window manager that guards the keyboard. Other
// programs tell what the windows are like. Started with "other", this is another program.

#include "desktop/Programs.h"
#include "platform/freedesktop/FreedesktopDesktop.h"

#include <QApplication>
#include <QLineEdit>
#include <QWindow>

namespace {

// A program that has been typed into a moment ago, which makes its window the one that the user
// wants to go on with.
class OtherProgram : public OtherProcess
{
public:
    OtherProgram()
        : OtherProcess(QCoreApplication::applicationFilePath(), { u"other"_s })
    {
        waitForReadyRead();
        window = idOf(readLine().trimmed().toULongLong());
        [this] {
            QTRY_COMPARE_WITH_TIMEOUT(activeWindow(), window, patience);
            xdotool(u"key a"_s);
            // What has been typed is its title.
            QTRY_VERIFY(propertyOf(window, u"_NET_WM_NAME"_s).endsWith(u"= \"a\""_s));
        }();
    }

    QString window;
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
class Panel : public QWidget
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
    QString id() const { return idOf(winId()); }
};

using OnTaskBar = OwnWindows::TaskBar;
using Level = OwnWindows::Level;

} // namespace

class OwnWindowsTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        TestCase::init();
        _desktop = makeFreedesktopDesktop();
    }

    void standing_holdsEachTimeAWindowIsShown()
    {
        Panel panel;
        const QStringList raised { u"ABOVE"_s, u"everywhere"_s };
        const QStringList skipped { u"SKIP_PAGER"_s, u"SKIP_TASKBAR"_s, u"everywhere"_s };
        // The second time before the window manager has taken note that the window was hidden.
        for (int i = 0; i < 2; ++i) {
            own().setStanding(panel.window(), OnTaskBar::Skipped, Level::Normal);
            panel.show();
            QTRY_COMPARE(states(panel), skipped);
            panel.hide();
            own().setStanding(panel.window(), OnTaskBar::Listed, Level::Raised);
            panel.show();
            QTRY_COMPARE(states(panel), raised);
            // The last word counts, however soon it comes.
            own().setLevel(panel.window(), Level::Raised);
            own().setLevel(panel.window(), Level::Normal);
            QTRY_COMPARE(states(panel), QStringList(u"everywhere"_s));
            panel.hide();
        }
    }

    void startupId_isAnsweredAndNotUsedAgain()
    {
        XClient client;
        Panel panel;
        const OtherProgram other;
        const QString id = u"else-1-\"here\"_TIME%1"_s.arg(client.time());
        own().setStanding(panel.window(), OnTaskBar::Listed, Level::Normal);
        // Asked for before it is shown.
        own().activate(panel.window(), { 0, id });
        panel.show();
        QTRY_COMPARE(own().activeWindow(), &panel.window());
        QCOMPARE(activeWindow(), panel.id());
        const auto startupId = [&panel] { return propertyOf(panel.id(), u"_NET_STARTUP_ID"_s); };
        QTRY_VERIFY(startupId().contains(u"else-1-"_s));
        QString quoted = id;
        const QByteArray message =
            "remove: ID=\"" + quoted.replace(u"\""_s, u"\\\""_s).toUtf8() + '"' + '\0';
        QTRY_VERIFY(messages(client).contains(message));
        panel.hide();
        own().setStanding(panel.window(), OnTaskBar::Listed, Level::Normal);
        panel.show();
        QTRY_VERIFY(!startupId().contains(u"else-1-"_s));
    }

    void activeWindow_isToldWhenItReallyChanges()
    {
        Panel panel;
        Panel second;
        QList<QWindow *> told;
        connect(&own(), &OwnWindows::activeWindowChanged, this,
            [&] { told.append(own().activeWindow()); });
        const QList<QWindow *> none { nullptr };
        const QList<QWindow *> first { &panel.window() };
        const auto isTold = [&](const QList<QWindow *> &windows) {
            return QTest::qWaitFor([&] { return told == windows; }, patience)
                && std::exchange(told, {}) == windows;
        };
        const OtherProgram other;
        panel.show();
        own().activate(panel.window(), {});
        QVERIFY(isTold(first));
        outputOf(u"wmctrl"_s, { u"-ia"_s, other.window });
        QVERIFY(isTold(none));
        own().activate(panel.window(), {});
        QVERIFY(isTold(first));
        {
            // Qt loses its window, and we do not.
            XClient client;
            QVERIFY(client.grabKeyboard());
            QTRY_COMPARE(QGuiApplication::focusWindow(), nullptr);
            QCOMPARE(own().activeWindow(), &panel.window());
        }
        QTRY_COMPARE(QGuiApplication::focusWindow(), &panel.window());
        QVERIFY(told.isEmpty());
        // From one of ours to the other one, and back when that goes.
        second.show();
        own().activate(second.window(), {});
        QVERIFY(isTold({ &second.window() }));
        second.hide();
        QVERIFY(isTold(first));
        panel.hide();
        QVERIFY(isTold(none));
    }

private:
    // The start-up messages that have come in, one after the other.
    QByteArray messages(const XClient &client)
    {
        while (const auto event = XClient::reply(xcb_poll_for_event(client.connection))) {
            if (XClient::isOf(*event, XCB_CLIENT_MESSAGE)) {
                const auto *const part =
                    reinterpret_cast<const xcb_client_message_event_t *>(event.get());
                _messages.append(reinterpret_cast<const char *>(part->data.data8), 20);
            }
        }
        return _messages;
    }
    OwnWindows &own() const { return _desktop->ownWindows(); }
    // Those that are asked for, sorted; with the desktop, where it is every one.
    static QStringList states(const Panel &panel)
    {
        const QString text = propertyOf(panel.id(), u"_NET_WM_STATE"_s);
        QStringList states;
        // Each once, as more would be a mistake of ours.
        for (const QString &name : { u"ABOVE"_s, u"SKIP_PAGER"_s, u"SKIP_TASKBAR"_s }) {
            states += text.count(name) == 1 ? QStringList(name) : QStringList();
        }
        if (propertyOf(panel.id(), u"_NET_WM_DESKTOP"_s).endsWith(u"= 4294967295"_s)) {
            states.append(u"everywhere"_s);
        }
        return states;
    }

    std::unique_ptr<Desktop> _desktop;
    QByteArray _messages;
};

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
