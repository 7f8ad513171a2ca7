// The panel of the real program on a real display: when it comes and goes, by keys, mouse, other
// windows and other starts.

#include "desktop/ProgramRunner.h"

#include <QElapsedTimer>
#include <QJsonObject>
#include <QRect>
#include <QRegularExpression>
#include <QTest>

#include <cstdlib>
#include <memory>
#include <xcb/xcb.h>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int patience = 10'000; // milliseconds
constexpr int reopenGuard = 250;
constexpr QRect screen(0, 0, 1280, 800);

QString outputOf(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    process.waitForFinished();
    return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
}

void xdotool(const QString &arguments)
{
    outputOf(u"xdotool"_s, arguments.split(u' '));
}

// Of those that are shown, in no order.
QStringList windowsBy(const QString &kind, const QString &pattern)
{
    return outputOf(u"xdotool"_s, { u"search"_s, u"--onlyvisible"_s, kind, pattern })
        .split(u'\n', Qt::SkipEmptyParts);
}

QStringList ownWindows()
{
    return windowsBy(u"--class"_s, u"^ortu$"_s);
}

QString activeWindow()
{
    return outputOf(u"xdotool"_s, { u"getactivewindow"_s });
}

QRect frameOf(const QString &window)
{
    const QStringList lines =
        outputOf(u"xdotool"_s, { u"getwindowgeometry"_s, u"--shell"_s, window }).split(u'\n');
    const auto value = [&lines](const QString &name) {
        const QStringList found = lines.filter(name + u'=');
        return found.value(0).section(u'=', 1).toInt();
    };
    return { value(u"X"_s), value(u"Y"_s), value(u"WIDTH"_s), value(u"HEIGHT"_s) };
}

bool isCentred(const QRect &frame, const QRect &place)
{
    const QPoint way = frame.center() - place.center();
    return frame.isValid() && qAbs(way.x()) <= 1 && qAbs(way.y()) <= 1;
}

// A window of another program, which is typed into.
class Terminal
{
public:
    Terminal()
    {
        _process.start(u"xterm"_s, { u"-T"_s, u"Terminal"_s, u"-geometry"_s, u"20x5+0+0"_s });
    }
    ~Terminal()
    {
        _process.kill();
        _process.waitForFinished();
    }
    Q_DISABLE_COPY_MOVE(Terminal)
    QString window() const { return windowsBy(u"--name"_s, u"^Terminal$"_s).value(0); }
    bool isActive() const { return !window().isEmpty() && activeWindow() == window(); }

private:
    QProcess _process;
};

// Has a key for itself wherever it is pressed, as programs do that change the volume.
class KeyOwner
{
public:
    explicit KeyOwner(xcb_keycode_t key)
        : _connection(xcb_connect(nullptr, nullptr))
    {
        const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(_connection)).data->root;
        xcb_grab_key(
            _connection, 1, root, XCB_MOD_MASK_ANY, key, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
        xcb_flush(_connection);
    }
    ~KeyOwner() { xcb_disconnect(_connection); }
    Q_DISABLE_COPY_MOVE(KeyOwner)

    bool hasHeardOfIt()
    {
        while (xcb_generic_event_t *const event = xcb_poll_for_event(_connection)) {
            _isHeard = _isHeard || (event->response_type & 0x7f) == XCB_KEY_PRESS;
            std::free(event);
        }
        return _isHeard;
    }

private:
    xcb_connection_t *_connection;
    bool _isHeard = false;
};

bool isCompositing()
{
    xcb_connection_t *const connection = xcb_connect(nullptr, nullptr);
    xcb_intern_atom_reply_t *const atom = xcb_intern_atom_reply(
        connection, xcb_intern_atom(connection, 0, 13, "_NET_WM_CM_S0"), nullptr);
    xcb_get_selection_owner_reply_t *const owner = xcb_get_selection_owner_reply(
        connection, xcb_get_selection_owner(connection, atom->atom), nullptr);
    const bool isOwned = owner->owner != XCB_WINDOW_NONE;
    std::free(atom);
    std::free(owner);
    xcb_disconnect(connection);
    return isOwned;
}

// A session bus that a test can do away with.
class Bus
{
public:
    Bus()
    {
        _daemon.start(u"dbus-daemon"_s,
            { u"--session"_s, u"--nofork"_s, u"--nopidfile"_s, u"--print-address"_s });
        _daemon.waitForReadyRead();
        _address = QString::fromUtf8(_daemon.readLine()).trimmed();
    }
    ~Bus() { kill(); }
    Q_DISABLE_COPY_MOVE(Bus)
    const QString &address() const { return _address; }
    void kill()
    {
        _daemon.kill();
        _daemon.waitForFinished();
    }

private:
    QProcess _daemon;
    QString _address;
};

} // namespace

class PanelTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void aStartShowsIt_aToggleGivesTheFocusBack();
    void aStartSoonAfterAnother_doesNotHideIt();
    void keysAndTheCloseButtonHideIt();
    void theMenuIsThere_andQuits();
    void keysTypedWhileItComesArrive();
    void aKeyOfAnotherProgramIsNoLossOfFocus();
    void whatLiesOnThePanelLeavesItThere();
    void anotherScreenSizeCentresIt();
    void thePreferencesFileMayDoAnything();
    void aBusIsNotNeeded_data();
    void aBusIsNotNeeded();
    void ofTwoStartsOneRemains();

private:
    QJsonObject status() const
    {
        return _runner->run({ u"--status"_s, u"--json"_s }).json().object();
    }
    bool isVisible() const { return status()[u"visible"_s].toBool(); }
    bool isActive() const { return status()[u"active"_s].toBool(); }
    QString filter() const { return status()[u"filter"_s].toString(); }
    void tell(const QString &verb) const { QCOMPARE(_runner->run({ verb }).exitCode, 0); }
    // Below its alerts, which have the same name.
    static QString panel() { return windowsBy(u"--name"_s, u"^Ortu$"_s).value(0); }

    // Shown and with the keyboard.
    void start()
    {
        _runner->start(_ortu, {});
        QTRY_VERIFY_WITH_TIMEOUT(_ortu.waitForStarted() && isActive(), patience);
    }
    void show() const
    {
        tell(u"--show"_s);
        QTRY_VERIFY_WITH_TIMEOUT(isActive(), patience);
    }
    static void press(const QString &keys) { xdotool(u"key "_s + keys); }
    static void pointAt(const QPoint &onPanel)
    {
        xdotool(u"mousemove --window %1 %2 %3"_s.arg(panel()).arg(onPanel.x()).arg(onPanel.y()));
    }
    static QPoint onMargin() { return { frameOf(panel()).width() / 2, 8 }; }

    std::unique_ptr<ProgramRunner> _runner;
    QProcess _ortu;
};

void PanelTest::init()
{
    _runner = std::make_unique<ProgramRunner>();
    for (const char *name : { "alpha", "beta", "gamma", "delta" }) {
        _runner->writeEntry(QLatin1String(name));
    }
    _runner->scanOnlyOwnApplications();
    // Away from where windows come up.
    xdotool(u"mousemove 1270 790"_s);
}

void PanelTest::cleanup()
{
    if (_ortu.state() != QProcess::NotRunning) {
        _ortu.terminate();
        _ortu.waitForFinished();
    }
    QTRY_VERIFY(ownWindows().isEmpty());
}

void PanelTest::aStartShowsIt_aToggleGivesTheFocusBack()
{
    const Terminal terminal;
    QTRY_VERIFY_WITH_TIMEOUT(terminal.isActive(), patience);
    start();
    QCOMPARE(activeWindow(), panel());
    QVERIFY(isCentred(frameOf(panel()), screen));

    tell(u"--toggle"_s);
    QTRY_VERIFY(!isVisible());
    QTRY_VERIFY(terminal.isActive());
    QTRY_VERIFY(panel().isEmpty());
    tell(u"--toggle"_s);
    QTRY_VERIFY(isActive());
    QTRY_COMPARE(activeWindow(), panel());
    QVERIFY(isCentred(frameOf(panel()), screen));
    // What fades out comes back.
    tell(u"--toggle"_s);
    tell(u"--toggle"_s);
    QTRY_VERIFY(isActive());
    QTRY_COMPARE(activeWindow(), panel());
}

void PanelTest::aStartSoonAfterAnother_doesNotHideIt()
{
    const Terminal terminal;
    QTRY_VERIFY_WITH_TIMEOUT(terminal.isActive(), patience);
    start();
    QElapsedTimer clock;
    const auto isGuardOver = [&clock] { return clock.hasExpired(reopenGuard + 50); };
    // A slow machine may need more than one attempt to be quick enough.
    bool isTried = false;
    for (int attempt = 0; !isTried && attempt < 20; ++attempt) {
        tell(u"--hide"_s);
        QTRY_VERIFY(terminal.isActive());
        clock.start();
        QCOMPARE(_runner->run({}).exitCode, 0);
        QCOMPARE(_runner->run({}).exitCode, 0);
        isTried = clock.elapsed() < reopenGuard - 20;
        QTRY_VERIFY(isActive() || !isTried);
    }
    QVERIFY(isTried);
    QVERIFY(isVisible());

    QTRY_VERIFY(isGuardOver());
    QCOMPARE(_runner->run({}).exitCode, 0);
    QTRY_VERIFY(!isVisible());
    QCOMPARE(_runner->run({ _runner->path(u"apps"_s) }).exitCode, 0);
    QTRY_VERIFY(isActive());
}

void PanelTest::keysAndTheCloseButtonHideIt()
{
    start();
    press(u"ctrl+w"_s);
    QTRY_VERIFY(!isVisible());
    show();
    press(u"b"_s);
    QTRY_COMPARE(filter(), u"b"_s);
    press(u"Escape"_s);
    QTRY_COMPARE(filter(), QString());
    QVERIFY(isVisible());
    press(u"Escape"_s);
    QTRY_VERIFY(!isVisible());
    show();
    pointAt({ 23, 18 });
    xdotool(u"click 1"_s);
    QTRY_VERIFY(!isVisible());
    // The window manager's own way to close windows.
    show();
    outputOf(u"wmctrl"_s, { u"-ic"_s, panel() });
    QTRY_VERIFY(!isVisible());
    QCOMPARE(_ortu.state(), QProcess::Running);
}

void PanelTest::theMenuIsThere_andQuits()
{
    start();
    const auto closesByEscape = [this] {
        if (!QTest::qWaitFor([] { return ownWindows().size() == 2; })) {
            return false;
        }
        press(u"Escape"_s);
        return QTest::qWaitFor([] { return ownWindows().size() == 1; }) && isVisible();
    };
    pointAt(onMargin());
    xdotool(u"click 3"_s);
    QVERIFY(closesByEscape());
    // Between the icons.
    pointAt({ 18 + 3, 30 + 3 });
    xdotool(u"click 3"_s);
    QVERIFY(closesByEscape());
    QVERIFY(isActive());

    pointAt({ frameOf(panel()).width() - 23, 18 });
    xdotool(u"click 1"_s);
    QTRY_COMPARE(ownWindows().size(), 2);
    press(u"Up"_s);
    press(u"Return"_s);
    QTRY_COMPARE(_ortu.state(), QProcess::NotRunning);
    QCOMPARE(_ortu.exitStatus(), QProcess::NormalExit);
    QCOMPARE(_ortu.exitCode(), 0);
    QCOMPARE(_runner->run({ u"--hide"_s }).exitCode, 1);
}

void PanelTest::keysTypedWhileItComesArrive()
{
    // With somebody who blends windows it fades in.
    QProcess compositor;
    compositor.start(u"xcompmgr"_s, QStringList());
    QTRY_VERIFY(isCompositing());
    const Terminal terminal;
    QTRY_VERIFY_WITH_TIMEOUT(terminal.isActive(), patience);
    start();
    for (int round = 0; round < 6; ++round) {
        tell(u"--hide"_s);
        QTRY_VERIFY(panel().isEmpty());
        QTRY_VERIFY(terminal.isActive());
        tell(round % 2 == 0 ? u"--show"_s : u"--toggle"_s);
        QTRY_VERIFY(!panel().isEmpty() && activeWindow() == panel());
        xdotool(u"type --delay 0 alp"_s);
        QTRY_COMPARE(filter(), u"alp"_s);
    }
    compositor.kill();
    compositor.waitForFinished();
    QTRY_VERIFY(!isCompositing());
    press(u"Escape"_s);
    press(u"Escape"_s);
    QTRY_VERIFY(panel().isEmpty());
}

void PanelTest::aKeyOfAnotherProgramIsNoLossOfFocus()
{
    start();
    press(u"b"_s);
    QTRY_COMPARE(filter(), u"b"_s);
    // F9 on every keyboard.
    KeyOwner owner(75);
    QElapsedTimer clock;
    clock.start();
    xdotool(u"keydown F9"_s);
    QTRY_VERIFY(owner.hasHeardOfIt());
    // Held for longer than anybody takes to notice that the keyboard has gone.
    QTRY_VERIFY(clock.hasExpired(500));
    QVERIFY(isVisible());
    QVERIFY(isActive());
    xdotool(u"keyup F9"_s);
    QVERIFY(isVisible());
    press(u"Escape"_s);
    press(u"g"_s);
    QTRY_COMPARE(filter(), u"g"_s);
}

void PanelTest::whatLiesOnThePanelLeavesItThere()
{
    start();
    pointAt(onMargin());
    xdotool(u"click 3"_s);
    QTRY_COMPARE(ownWindows().size(), 2);
    press(u"Down"_s);
    press(u"Down"_s);
    press(u"Return"_s);
    const auto about = [] { return windowsBy(u"--name"_s, u"^About Ortu$"_s).value(0); };
    QTRY_VERIFY(!about().isEmpty());
    QTRY_COMPARE(activeWindow(), about());
    QVERIFY(isVisible());
    press(u"Escape"_s);
    QTRY_VERIFY(about().isEmpty());
    QTRY_COMPARE(activeWindow(), panel());
    QVERIFY(isActive());

    // An alert, which another program has provoked; one alone, since there is another way in.
    _runner->run({ u"--defaults"_s, u"cursorHotSpotLocation"_s, u"2"_s });
    _runner->run({ u"--defaults"_s, u"showIconInDock"_s, u"no"_s });
    QTRY_COMPARE(ownWindows().size(), 2);
    const auto isAlertInFront = [] {
        const QString front = activeWindow();
        return front != panel() && ownWindows().contains(front);
    };
    QTRY_VERIFY(isAlertInFront());
    QVERIFY(isVisible());
    press(u"Return"_s);
    QTRY_COMPARE(ownWindows().size(), 1);
    QTRY_COMPARE(activeWindow(), panel());
    QVERIFY(isActive());
    press(u"b"_s);
    QTRY_COMPARE(filter(), u"b"_s);
    // With the alert in front of it, another window takes over.
    _runner->run({ u"--defaults"_s, u"cursorHotSpotLocation"_s, u"0"_s });
    _runner->run({ u"--defaults"_s, u"hotKeyCode"_s, u"-1"_s });
    _runner->run({ u"--defaults"_s, u"showAppInStatusBar"_s, u"no"_s });
    QTRY_COMPARE(ownWindows().size(), 2);
    const Terminal terminal;
    QTRY_VERIFY_WITH_TIMEOUT(terminal.isActive(), patience);
    const QStringList others = ownWindows().filter(QRegularExpression(u"^(?!%1$)"_s.arg(panel())));
    outputOf(u"wmctrl"_s, { u"-ic"_s, others.value(0) });
    tell(u"--hide"_s);
    QTRY_VERIFY(!isVisible());
}

void PanelTest::anotherScreenSizeCentresIt()
{
    start();
    const auto xrandr = [](const QString &arguments) {
        outputOf(u"xrandr"_s, arguments.split(u' '));
    };
    xrandr(u"--newmode small 0 1000 0 0 0 700 0 0 0"_s);
    xrandr(u"--addmode screen small"_s);

    xrandr(u"--output screen --mode small"_s);
    QTRY_VERIFY(isCentred(frameOf(panel()), { 0, 0, 1000, 700 }));
    QVERIFY(isVisible());
    xrandr(u"--output screen --mode 1280x800"_s);
    QTRY_VERIFY(isCentred(frameOf(panel()), screen));

    // Hidden meanwhile, it comes up where it belongs.
    tell(u"--hide"_s);
    QTRY_VERIFY(panel().isEmpty());
    xrandr(u"--output screen --mode small"_s);
    show();
    QTRY_VERIFY(isCentred(frameOf(panel()), { 0, 0, 1000, 700 }));
    xrandr(u"--output screen --mode 1280x800"_s);
    QTRY_VERIFY(isCentred(frameOf(panel()), screen));
}

void PanelTest::thePreferencesFileMayDoAnything()
{
    start();
    const QString name = u"config/Ortu/Preferences.plist"_s;
    const QString path = _runner->path(name);
    const QByteArray good = _runner->read(name);
    QVERIFY(!good.isEmpty());
    const auto isUsable = [&] {
        tell(u"--hide"_s);
        const bool isHidden = QTest::qWaitFor([this] { return !isVisible(); });
        tell(u"--show"_s);
        return isHidden && QTest::qWaitFor([this] { return isActive(); });
    };

    _runner->write(name, "rubbish");
    QVERIFY(isUsable());
    QVERIFY(QFile::remove(path));
    QVERIFY(isUsable());
    QFile::remove(path);
    QVERIFY(QDir().mkpath(path + u"/inside"_s));
    QVERIFY(isUsable());
    QVERIFY(QDir(path).removeRecursively());
    // Replaced as a whole, by something of a later version among other things.
    QByteArray later = good;
    later.replace("</dict>",
        "<key>groupToShowWhenWindowOpens</key><integer>6</integer>"
        "<key>windowAlpha</key><string>much</string><key>later</key><array/></dict>");
    _runner->write(name + u".new"_s, later);
    QCOMPARE(::rename(QFile::encodeName(path + u".new"_s).constData(),
                 QFile::encodeName(path).constData()),
        0);
    const auto showsGroup6 = [&] { return isUsable() && status()[u"group"_s].toInt() == 6; };
    QTRY_VERIFY(showsGroup6());
    QCOMPARE(_ortu.state(), QProcess::Running);
}

void PanelTest::aBusIsNotNeeded_data()
{
    QTest::addColumn<bool>("isThereAtFirst");
    QTest::newRow("one that goes") << true;
    QTest::newRow("none at all") << false;
}

void PanelTest::aBusIsNotNeeded()
{
    QFETCH(const bool, isThereAtFirst);
    Bus bus;
    _runner->set("DBUS_SESSION_BUS_ADDRESS",
        isThereAtFirst ? bus.address() : u"unix:path=/nonexistent/bus"_s);
    _runner->start(_ortu, {});
    QTRY_VERIFY_WITH_TIMEOUT(!panel().isEmpty() && activeWindow() == panel(), patience);
    if (isThereAtFirst) {
        QVERIFY(isVisible());
    }

    bus.kill();

    QByteArray log;
    const auto lineCount = [&] {
        log += _ortu.readAllStandardError();
        return log.count("session bus");
    };
    QTRY_COMPARE(lineCount(), 1);
    press(u"b"_s);
    pointAt(onMargin());
    xdotool(u"click 3"_s);
    QTRY_COMPARE(ownWindows().size(), 2);
    press(u"Escape"_s);
    QTRY_COMPARE(ownWindows().size(), 1);
    press(u"ctrl+w"_s);
    QTRY_VERIFY(panel().isEmpty());
    QCOMPARE(_ortu.state(), QProcess::Running);
    QCOMPARE(_runner->run({ u"--toggle"_s, u"--set"_s, u"noSuchKey=1"_s }).exitCode, 2);

    _ortu.terminate();
    QVERIFY(_ortu.waitForFinished());
    QCOMPARE(lineCount(), 1);
}

void PanelTest::ofTwoStartsOneRemains()
{
    QProcess other;
    _runner->start(_ortu, {});
    _runner->start(other, {});
    // One that is still on its way does not run either.
    QVERIFY(_ortu.waitForStarted() && other.waitForStarted());
    const auto running = [&] {
        return int(_ortu.state() == QProcess::Running) + int(other.state() == QProcess::Running);
    };
    QTRY_COMPARE(running(), 1);
    QProcess &ended = other.state() == QProcess::Running ? _ortu : other;
    QCOMPARE(ended.exitStatus(), QProcess::NormalExit);
    QCOMPARE(ended.exitCode(), 0);
    QTRY_VERIFY(isActive());
    QCOMPARE(ownWindows().size(), 1);
    QCOMPARE(ended.readAllStandardError(), QByteArray());

    // By the verb, after which another start finds the name and the hot key free.
    for (int round = 0; round < 5; ++round) {
        tell(u"--quit"_s);
        QTRY_COMPARE(running(), 0);
        start();
        QVERIFY(!status().contains(u"hotKeyProblem"_s));
    }
}

QTEST_GUILESS_MAIN(PanelTest)

#include "PanelTest.moc"
