// The hot key and the modifier tap on a real display: keys are pressed as by a user, in several
// layouts, while other programs have the keyboard or hold the key.

#include "desktop/Programs.h"
#include "platform/freedesktop/FreedesktopDesktop.h"
#include "platform/freedesktop/input/XHotKeyGrab.h"
#include "platform/freedesktop/input/XModifierTap.h"

#include <QRasterWindow>

namespace {

// Keys of this display by their codes; what they type is up to the layout.
constexpr int Tab = 23, Q = 24, Control = 37, F = 41, Shift = 50, Alt = 64, CapsLock = 66, F5 = 71,
              NumLock = 77, Super = 133;
using Keys = QList<int>;

const HotKeyCombination controlTab { .key = u"TAB"_s, .control = true };

bool run(const QString &program, const QString &arguments)
{
    return QProcess::execute(program, arguments.split(u' ')) == 0;
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

// Another program, as far as the X server can tell.
struct OtherProgram final : XClient
{
    bool holdKey(int key, quint16 modifiers)
    {
        return isDone(xcb_grab_key_checked(connection, 0, root, modifiers, xcb_keycode_t(key),
            XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
    }
    bool letGoOfKey(int key)
    {
        return isDone(
            xcb_ungrab_key_checked(connection, xcb_keycode_t(key), root, XCB_MOD_MASK_ANY));
    }
    bool takeFocus()
    {
        xcb_map_window(connection, window);
        return isDone(xcb_set_input_focus_checked(
            connection, XCB_INPUT_FOCUS_POINTER_ROOT, window, XCB_CURRENT_TIME));
    }
    // The keys that were pressed in it until now.
    const Keys &typed()
    {
        while (const auto event = reply(xcb_poll_for_event(connection))) {
            if (isOf(*event, XCB_KEY_PRESS)) {
                _typed += reinterpret_cast<const xcb_key_press_event_t *>(event.get())->detail;
            }
        }
        return _typed;
    }

private:
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

class HotKeyTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        TestCase::init();
        QVERIFY(run(u"setxkbmap"_s, u"-keycodes evdev -layout us"_s));
        _ours = std::make_unique<Program>();
    }
    void cleanup()
    {
        for (const int key : { Tab, F5, F, Control }) {
            QVERIFY(release({ key }));
        }
        _ours.reset();
    }

    void itIsPressed_withItsOwnModifiers()
    {
        const std::pair<HotKeyCombination, Keys> rows[] { { { .key = u"FK05"_s }, { F5 } },
            { controlTab, { Control, Tab } },
            { { u"AC04"_s, true, true, true, true }, { Control, Alt, Super, Shift, F } } };
        for (const auto &[combination, chord] : rows) {
            QCOMPARE(_ours->hotKey.registerKey(combination), QString());
            for (const Keys &locks : QList<Keys> { {}, { CapsLock, NumLock } }) {
                const auto toggle = [&] { return locks.isEmpty() || strike(locks); };
                QVERIFY(toggle());
                const auto unlock = qScopeGuard(toggle);
                QVERIFY(strike(chord) && hasArrived(_ours->pressed, 1));
                QVERIFY(_ours->pressed.takeFirst().at(0).value<ActivationStamp>().time > 0);
            }
            // One modifier more or less is another key.
            QVERIFY(chord.size() == 1 || strike({ chord.last() }));
            QVERIFY(chord.size() == 5 || strike(Keys { Super } + chord));
            QVERIFY(hasArrived(_ours->pressed, 0));
        }
    }

    void held_itIsPressedOnce()
    {
        QCOMPARE(_ours->hotKey.registerKey(controlTab), QString());
        QVERIFY(press({ Control, Tab }));
        QTRY_VERIFY(_ours->keys.size() > 10);
        // Also without its modifier.
        QVERIFY(release({ Control }));
        const qsizetype before = _ours->keys.size();
        QTRY_VERIFY(_ours->keys.size() > before + 10);
        QCOMPARE(_ours->pressed.size(), 1);
        QVERIFY(release({ Tab }) && strike({ Control, Tab }) && hasArrived(_ours->pressed, 2));
    }

    void heldBefore_itCountsOnceItWasReleased()
    {
        // The window that had the keyboard when it went down gets the release.
        QVERIFY(press({ F5 }));
        QCOMPARE(_ours->hotKey.registerKey({ .key = u"FK05"_s }), QString());
        QVERIFY(release({ F5 }));
        QTRY_VERIFY(!_ours->hotKey.findChild<QTimer *>()->isActive());
        QVERIFY(strike({ F5 }) && hasArrived(_ours->pressed, 1));
    }

    void anotherKeyboard_keepsThePhysicalKey()
    {
        QCOMPARE(_ours->hotKey.namesOfKey(Q), QStringList(u"AD01"_s));
        QCOMPARE(_ours->hotKey.registerKey({ .key = u"AD01"_s, .option = true }), QString());
        for (const char *layout : { "fr", "us(dvorak)", "us,ru" }) {
            QVERIFY(setKeyboard(u"-layout "_s + QLatin1String(layout)) && strike({ Alt, Q }));
            QVERIFY(hasArrived(_ours->pressed, 1));
            _ours->pressed.clear();
        }
        QVERIFY(_ours->registration.isEmpty());
    }

    void whatDoesNotCome_getsNoKeys()
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
        // A window that is never shown.
        QWindow window;
        connect(&hotKey, &HotKey::pressed, &window, [&] { hotKey.handKeysTo(window); });
        QVERIFY(typesAtOnce());
        QTRY_COMPARE(other.typed(), (Keys { Q, F, Q, F }));
    }

    void whatAnotherHolds_isTakenOnceItIsFree()
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
        QVERIFY(strike({ Control, Tab }) && hasArrived(_ours->pressed, 1));
        _ours->hotKey.unregisterKey();
        QTRY_VERIFY(other.holdKey(Tab, XCB_MOD_MASK_CONTROL));
    }

    void theTap_hearsWhatIsTypedElsewhere()
    {
        QVERIFY(setKeyboard(u"-layout fr"_s));
        OtherProgram other;
        QVERIFY(_ours->tap.setUp() && !_ours->tap.isEnabled());
        const std::pair<int, Qt::KeyboardModifier> keys[] { { Control, Qt::ControlModifier },
            { Alt, Qt::AltModifier }, { Super, Qt::MetaModifier } };
        // What the tap said at its change number i.
        const auto held = [this](int i) {
            return _ours->changes.at(i).at(0).value<Qt::KeyboardModifiers>();
        };
        for (const bool isKeyboardHeld : { false, true }) {
            QVERIFY(!isKeyboardHeld || other.grabKeyboard());
            _ours->tap.setEnabled(true);
            for (const auto &[key, modifier] : keys) {
                QVERIFY(strike({ key, Shift, Q }) && hasArrived(_ours->changes, 4));
                QCOMPARE(held(0), modifier);
                QCOMPARE(held(1), modifier | Qt::ShiftModifier);
                QCOMPARE(held(3), Qt::NoModifier);
                _ours->changes.clear();
            }
            _ours->tap.setEnabled(false);
        }
        QVERIFY(strike({ Shift }) && hasArrived(_ours->changes, 0));
    }

    void withoutDisplay_thereIsAReason()
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

private:
    bool setKeyboard(const QString &what)
    {
        _ours->maps.clear();
        return run(u"setxkbmap"_s, what) && (!_ours->maps.isEmpty() || _ours->maps.wait());
    }
    // That nothing more comes is known when the server has answered a later question.
    bool hasArrived(const QSignalSpy &spy, qsizetype count)
    {
        QSignalSpy answer(&_ours->connection, &XConnection::timeTold);
        return QTest::qWaitFor([&] { return spy.size() >= count; })
            && (_ours->connection.askTime(), answer.wait()) && spy.size() == count;
    }

    std::unique_ptr<Program> _ours;
};

QTEST_MAIN(HotKeyTest)
#include "HotKeyTest.moc"
