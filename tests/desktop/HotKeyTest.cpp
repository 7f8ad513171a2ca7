// The hot key and the modifier tap on a real display: keys are pressed as by a user, in whichever
// layout, while others have the keyboard or hold the key.

#include "desktop/ProgramRunner.h"
#include "platform/freedesktop/FreedesktopDesktop.h"
#include "platform/freedesktop/input/XHotKeyGrab.h"
#include "platform/freedesktop/input/XModifierTap.h"

#include <QProcess>
#include <QRasterWindow>
#include <QSignalSpy>
#include <QTest>

#include <csignal>
#include <memory>

using namespace Qt::Literals::StringLiterals;

namespace {

// Keys of this display by their codes; what they type is up to the layout.
constexpr int Tab = 23, Q = 24, Control = 37, F = 41, Shift = 50, Backslash = 51, Alt = 64,
              CapsLock = 66, F5 = 71, NumLock = 77, OtherHome = 97, RightAlt = 108, Home = 110,
              Super = 133, F20 = 198;
using Keys = QList<int>;

const HotKeyCombination controlTab { .key = u"TAB"_s, .control = true };

bool run(const QString &program, const QString &arguments)
{
    QProcess process;
    process.start(program, arguments.split(u' '));
    return process.waitForFinished() && process.exitCode() == 0;
}

bool type(const QString &action, const Keys &keys)
{
    QStringList chord;
    for (const int key : keys) {
        chord.append(QString::number(key));
    }
    return run(u"xdotool"_s, action + u' ' + chord.join(u'+'));
}
const auto press = [](const Keys &keys) { return type(u"keydown"_s, keys); };
const auto release = [](const Keys &keys) { return type(u"keyup"_s, keys); };
const auto strike = [](const Keys &keys) { return type(u"key"_s, keys); };

// Another program, as far as the display can tell.
class OtherProgram final
{
public:
    OtherProgram()
        : _connection(xcb_connect(nullptr, nullptr))
        , _root(xcb_setup_roots_iterator(xcb_get_setup(_connection)).data->root)
    { }
    ~OtherProgram() { xcb_disconnect(_connection); }
    Q_DISABLE_COPY_MOVE(OtherProgram)

    bool holdKey(int key, quint16 modifiers)
    {
        return isDone(xcb_grab_key_checked(_connection, 0, _root, modifiers, xcb_keycode_t(key),
            XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
    }
    bool letGoOfKey(int key)
    {
        return isDone(
            xcb_ungrab_key_checked(_connection, xcb_keycode_t(key), _root, XCB_MOD_MASK_ANY));
    }
    bool holdKeyboard()
    {
        const XReply<xcb_grab_keyboard_reply_t> reply(xcb_grab_keyboard_reply(_connection,
            xcb_grab_keyboard(
                _connection, 0, _root, XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC),
            nullptr));
        return reply && reply->status == XCB_GRAB_STATUS_SUCCESS;
    }
    // Opens a window and gives it the focus.
    bool takeFocus()
    {
        const xcb_window_t window = xcb_generate_id(_connection);
        const std::array<quint32, 2> values { 1, XCB_EVENT_MASK_KEY_PRESS };
        xcb_create_window(_connection, XCB_COPY_FROM_PARENT, window, _root, 0, 0, 9, 9, 0,
            XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
            XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values.data());
        xcb_map_window(_connection, window);
        return isDone(xcb_set_input_focus_checked(
            _connection, XCB_INPUT_FOCUS_POINTER_ROOT, window, XCB_CURRENT_TIME));
    }
    // The keys that were pressed in it until now.
    const Keys &typed()
    {
        while (const XReply<xcb_generic_event_t> event { xcb_poll_for_event(_connection) }) {
            if (event->response_type == XCB_KEY_PRESS) {
                _typed += reinterpret_cast<const xcb_key_press_event_t *>(event.get())->detail;
            }
        }
        return _typed;
    }

private:
    bool isDone(xcb_void_cookie_t cookie)
    {
        return XReply<xcb_generic_error_t>(xcb_request_check(_connection, cookie)) == nullptr;
    }

    xcb_connection_t *_connection;
    xcb_window_t _root;
    Keys _typed;
};

// What the desktop makes for us, in the open.
struct Program
{
    Program()
    {
        // Each press summons nothing.
        QObject::connect(&hotKey, &XHotKeyGrab::pressed, &hotKey,
            [this] { hotKey.handKeysTo(XCB_WINDOW_NONE); });
    }

    XConnection connection;
    XKeyboard keyboard { connection };
    XHotKeyGrab hotKey { keyboard };
    XModifierTap tap { keyboard };
    QSignalSpy pressed { &hotKey, &XHotKeyGrab::pressed };
    QSignalSpy registration { &hotKey, &XHotKeyGrab::registrationChanged };
    QSignalSpy changes { &tap, &ModifierTap::changed };
    QSignalSpy keys { &keyboard, &XKeyboard::keyPressed };
    QSignalSpy maps { &keyboard, &XKeyboard::mapChanged };
};

} // namespace

class HotKeyTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void itIsPressed_withItsOwnModifiers_data();
    void itIsPressed_withItsOwnModifiers();
    void held_itIsPressedOnce();
    void held_itLetsOtherKeysThrough();
    void heldBefore_itCountsOnceItWasReleased();
    void anotherKeyboard_keepsThePhysicalKey();
    void typedAtOnce_reachesThePanel();
    void whatDoesNotCome_getsNoKeys();
    void whatAnotherHolds_isTakenOnceItIsFree();
    void theTap_hearsWhatIsTypedElsewhere();
    void theTap_sleepsWhileItIsOff();
    void withoutDisplay_thereIsAReason();

private:
    bool setKeyboard(const QString &what);
    bool hasArrived(const QSignalSpy &spy, qsizetype count);

    std::unique_ptr<Program> _ours;
};

void HotKeyTest::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
    QVERIFY(run(u"setxkbmap"_s, u"-keycodes evdev -layout us"_s));
    _ours = std::make_unique<Program>();
}

void HotKeyTest::cleanup()
{
    for (const int key : { Tab, F5, F, Control }) {
        QVERIFY(release({ key }));
    }
    _ours.reset();
}

bool HotKeyTest::setKeyboard(const QString &what)
{
    _ours->maps.clear();
    return run(u"setxkbmap"_s, what) && (!_ours->maps.isEmpty() || _ours->maps.wait());
}

// That nothing more comes is known when the server has answered a later question.
bool HotKeyTest::hasArrived(const QSignalSpy &spy, qsizetype count)
{
    QSignalSpy answer(&_ours->connection, &XConnection::timeTold);
    return QTest::qWaitFor([&] { return spy.size() >= count; })
        && (_ours->connection.askTime(), answer.wait()) && spy.size() == count;
}

void HotKeyTest::itIsPressed_withItsOwnModifiers_data()
{
    QTest::addColumn<HotKeyCombination>("combination");
    QTest::addColumn<Keys>("chord");
    const auto row = [](const char *name, const HotKeyCombination &combination, const Keys &chord) {
        QTest::newRow(name) << combination << chord;
    };
    row("none", { .key = u"FK05"_s }, { F5 });
    row("control", controlTab, { Control, Tab });
    row("option", { .key = u"HOME"_s, .option = true }, { Alt, Home });
    row("command", { .key = u"AD01"_s, .command = true }, { Super, Q });
    row("all", { u"AC04"_s, true, true, true, true }, { Control, Alt, Super, Shift, F });
    row("another name of the key", { .key = u"AC12"_s, .shift = true }, { Shift, Backslash });
}

void HotKeyTest::itIsPressed_withItsOwnModifiers()
{
    QFETCH(const HotKeyCombination, combination);
    QFETCH(const Keys, chord);
    QCOMPARE(_ours->hotKey.registerKey(combination), QString());
    for (const Keys &locks : QList<Keys> { {}, { CapsLock }, { NumLock }, { CapsLock, NumLock } }) {
        const auto toggle = [&] { return locks.isEmpty() || strike(locks); };
        QVERIFY(toggle());
        const auto unlock = qScopeGuard(toggle);
        QVERIFY(strike(chord));
        QVERIFY(hasArrived(_ours->pressed, 1));
        QVERIFY(_ours->pressed.takeFirst().at(0).value<ActivationStamp>().time > 0);
    }
    // One modifier more or less is another key.
    QVERIFY(chord.size() == 1 || strike({ chord.last() }));
    QVERIFY(chord.size() == 5 || strike(Keys { chord.contains(Super) ? Alt : Super } + chord));
    QVERIFY(hasArrived(_ours->pressed, 0));
}

void HotKeyTest::held_itIsPressedOnce()
{
    QCOMPARE(_ours->hotKey.registerKey(controlTab), QString());
    const auto goesOnRepeating = [this] {
        const qsizetype before = _ours->keys.size();
        return QTest::qWaitFor([&] { return _ours->keys.size() > before + 10; });
    };
    QVERIFY(press({ Control, Tab }));
    QVERIFY(goesOnRepeating());
    // Also without its modifier, and when the keyboard changes in a way that does not concern it.
    QVERIFY(release({ Control }));
    QVERIFY(goesOnRepeating());
    QVERIFY(setKeyboard(u"-layout fr"_s));
    QVERIFY(press({ Tab }));
    QCOMPARE(_ours->pressed.size(), 1);
    QVERIFY(release({ Tab }));
    QVERIFY(strike({ Control, Tab }));
    QVERIFY(hasArrived(_ours->pressed, 2));
}

void HotKeyTest::held_itLetsOtherKeysThrough()
{
    OtherProgram other;
    QVERIFY(other.takeFocus());
    QCOMPARE(_ours->hotKey.registerKey({ .key = u"FK05"_s }), QString());
    QVERIFY(press({ F5 }));
    QTRY_COMPARE(_ours->pressed.size(), 1);
    // The first of them stops the repeating.
    QVERIFY(strike({ Shift, F }) && strike({ Q }) && strike({ Shift, Q }));
    QTRY_COMPARE(other.typed(), (Keys { F, Q, Shift, Q }));
    QVERIFY(release({ F5 }));
    QVERIFY(strike({ F5 }));
    QVERIFY(hasArrived(_ours->pressed, 2));
    QCOMPARE(other.typed().size(), 4);
}

void HotKeyTest::heldBefore_itCountsOnceItWasReleased()
{
    // Whoever had the keyboard when it went down gets the release.
    QVERIFY(press({ F5 }));
    QCOMPARE(_ours->hotKey.registerKey({ .key = u"FK05"_s }), QString());
    QVERIFY(release({ F5 }));
    QTRY_VERIFY(!_ours->hotKey.findChild<QTimer *>()->isActive());
    QVERIFY(strike({ F5 }));
    QVERIFY(hasArrived(_ours->pressed, 1));
    // Repetitions are ours.
    _ours->hotKey.unregisterKey();
    QVERIFY(press({ F5 }));
    QCOMPARE(_ours->hotKey.registerKey({ .key = u"FK05"_s }), QString());
    QTRY_VERIFY(_ours->keys.size() > 10);
    QCOMPARE(_ours->pressed.size(), 1);
}

void HotKeyTest::anotherKeyboard_keepsThePhysicalKey()
{
    QCOMPARE(_ours->hotKey.registerKey({ .key = u"AD01"_s, .option = true }), QString());
    for (const char *layout : { "fr", "us(dvorak)", "ru", "us,ru" }) {
        QVERIFY(setKeyboard(u"-layout "_s + QLatin1String(layout)));
        QVERIFY(strike({ Alt, Q }));
        QVERIFY(hasArrived(_ours->pressed, 1));
        _ours->pressed.clear();
    }
    QCOMPARE(_ours->hotKey.registerKey({ .key = u"HOME"_s }), QString());
    QVERIFY(setKeyboard(u"-keycodes xfree86"_s));
    QVERIFY(strike({ Home }));
    QVERIFY(strike({ OtherHome }));
    QVERIFY(hasArrived(_ours->pressed, 1));
    QVERIFY(_ours->registration.isEmpty());
    // This one is not there at all.
    const QString whyNot = _ours->hotKey.registerKey({ .key = u"FK20"_s });
    QVERIFY(!whyNot.isEmpty());
    QVERIFY(setKeyboard(u"-keycodes evdev"_s));
    QVERIFY(strike({ F20 }));
    QVERIFY(hasArrived(_ours->pressed, 2));
    QVERIFY(setKeyboard(u"-keycodes xfree86"_s));
    QCOMPARE(_ours->registration, (QList<QVariantList> { { QString() }, { whyNot } }));
}

void HotKeyTest::typedAtOnce_reachesThePanel()
{
    const ProgramRunner runner;
    runner.scanOnlyOwnApplications();
    QProcess program;
    runner.start(program, { u"--service"_s });
    const auto status = [&](const QString &name) {
        return runner.run({ u"--status"_s, u"--json"_s }).json()[name].toString();
    };
    QTRY_VERIFY(!status(u"hotKey"_s).isEmpty());
    const QString atOnce = u"key --delay 0 37+23 24 41"_s;
    const QString whileHeld =
        u"keydown --delay 0 37+23 keyup --delay 0 37 key --delay 0 24 41 keyup 23"_s;
    OtherProgram other;
    for (const QString &hand : { atOnce, whileHeld }) {
        QVERIFY(other.takeFocus());
        QVERIFY(run(u"xdotool"_s, hand));
        QTRY_COMPARE(status(u"filter"_s), u"qf"_s);
        QCOMPARE(runner.run({ u"--hide"_s }).exitCode, 0);
    }
    QVERIFY(!other.typed().contains(Q) && !other.typed().contains(F));
    // Stopped as by Ctrl-Z in its terminal, it leaves the key and the keyboard alone.
    QCOMPARE(::kill(pid_t(program.processId()), SIGTSTP), 0);
    QTRY_VERIFY(other.holdKey(Tab, XCB_MOD_MASK_CONTROL));
    QVERIFY(other.letGoOfKey(Tab));
    QCOMPARE(::kill(pid_t(program.processId()), SIGCONT), 0);
    QTRY_VERIFY(run(u"xdotool"_s, atOnce) && status(u"filter"_s) == u"qf"_s);
    program.terminate();
    QVERIFY(program.waitForFinished());
}

void HotKeyTest::whatDoesNotCome_getsNoKeys()
{
    const std::unique_ptr<Desktop> desktop = makeFreedesktopDesktop();
    HotKey &hotKey = desktop->hotKey();
    QCOMPARE(hotKey.registerKey({ .key = u"FK05"_s }), QString());
    OtherProgram other;
    QVERIFY(other.takeFocus());
    const auto typesAtOnce = [] { return run(u"xdotool"_s, u"key --delay 0 71 24 41"_s); };
    // While the main thread does not get to anything else.
    QVERIFY(typesAtOnce());
    while (other.typed().size() < 2) { }
    // A window that is never shown, and none at all.
    QWindow window;
    const auto connection =
        connect(&hotKey, &HotKey::pressed, &window, [&] { hotKey.handKeysTo(window); });
    QVERIFY(typesAtOnce());
    QTRY_COMPARE(other.typed().size(), 4);
    disconnect(connection);
    QVERIFY(typesAtOnce());
    QTRY_COMPARE(other.typed(), (Keys { Q, F, Q, F, Q, F }));
}

void HotKeyTest::whatAnotherHolds_isTakenOnceItIsFree()
{
    OtherProgram other;
    // Part of what we want is enough.
    QVERIFY(other.holdKey(Tab, XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_LOCK));
    QCOMPARE(_ours->hotKey.registerKey({ .key = u"FK05"_s }), QString());
    QVERIFY(!other.holdKey(F5, 0));
    QCOMPARE(_ours->hotKey.registerKey(controlTab), u"another program holds this key"_s);
    // Nothing of it is kept, and nothing of what was held before.
    QVERIFY(other.letGoOfKey(Tab));
    QTRY_VERIFY(other.holdKey(Tab, XCB_MOD_MASK_CONTROL));
    QTRY_VERIFY(other.holdKey(F5, XCB_MOD_MASK_ANY));
    QVERIFY(other.letGoOfKey(Tab));
    // Another window is in front.
    QRasterWindow window;
    window.show();
    QTRY_COMPARE(_ours->registration, QList<QVariantList> { { QString() } });
    QVERIFY(strike({ Control, Tab }));
    QVERIFY(hasArrived(_ours->pressed, 1));
    _ours->hotKey.unregisterKey();
    QTRY_VERIFY(other.holdKey(Tab, XCB_MOD_MASK_CONTROL));
}

void HotKeyTest::theTap_hearsWhatIsTypedElsewhere()
{
    QVERIFY(setKeyboard(u"-layout fr"_s));
    OtherProgram other;
    QVERIFY(_ours->tap.setUp() && !_ours->tap.isEnabled());
    const QList<std::pair<int, Qt::KeyboardModifier>> keys { { Shift, Qt::ShiftModifier },
        { Control, Qt::ControlModifier }, { Alt, Qt::AltModifier }, { Super, Qt::MetaModifier },
        { RightAlt, Qt::GroupSwitchModifier } };
    for (const bool isKeyboardHeld : { false, true }) {
        QVERIFY(!isKeyboardHeld || other.holdKeyboard());
        _ours->tap.setEnabled(true);
        for (const auto &[key, modifier] : keys) {
            const bool isShift = key == Shift;
            QVERIFY(strike({ CapsLock }));
            QVERIFY(strike({ key, isShift ? Control : Shift, Q }));
            QVERIFY(strike({ CapsLock }));
            QVERIFY(hasArrived(_ours->changes, 4));
            const auto held = [&](int i) {
                return _ours->changes.at(i).at(0).value<Qt::KeyboardModifiers>();
            };
            QCOMPARE(held(0), modifier);
            QCOMPARE(held(1), modifier | (isShift ? Qt::ControlModifier : Qt::ShiftModifier));
            QCOMPARE(held(3), Qt::NoModifier);
            _ours->changes.clear();
        }
        _ours->tap.setEnabled(false);
    }
}

void HotKeyTest::theTap_sleepsWhileItIsOff()
{
    _ours->tap.setEnabled(true);
    _ours->tap.setEnabled(false);
    const QSignalSpy events(&_ours->connection, &XConnection::eventArrived);
    QVERIFY(strike({ Shift }));
    QVERIFY(press({ Control }));
    QVERIFY(hasArrived(_ours->changes, 0));
    // The answer to the question just asked.
    QCOMPARE(events.size(), 1);
    // What went down meanwhile is no news, that it goes up is.
    _ours->tap.setEnabled(true);
    QVERIFY(_ours->tap.isEnabled());
    QVERIFY(release({ Control }));
    QVERIFY(hasArrived(_ours->changes, 1));
    QCOMPARE(_ours->changes.at(0).at(0).value<Qt::KeyboardModifiers>(), Qt::NoModifier);
}

void HotKeyTest::withoutDisplay_thereIsAReason()
{
    const QByteArray display = qgetenv("DISPLAY");
    const auto restore = qScopeGuard([&] { qputenv("DISPLAY", display); });
    for (const char *other : { "", ":9999" }) {
        qputenv("DISPLAY", other);
        const std::unique_ptr<Desktop> desktop = makeFreedesktopDesktop();
        QCOMPARE(desktop->hotKey().registerKey(controlTab), u"there is no X display"_s);
        desktop->modifierTap().setEnabled(true);
        QVERIFY(!desktop->modifierTap().setUp() && !desktop->modifierTap().isEnabled());
    }
}

QTEST_MAIN(HotKeyTest)

#include "HotKeyTest.moc"
