// The hot key and the modifier tap on a real display: keys are pressed as by a user, in whichever
// layout, while others have the keyboard or hold the key.

#include "platform/freedesktop/FreedesktopDesktop.h"
#include "platform/freedesktop/XHotKey.h"
#include "platform/freedesktop/XModifierTap.h"

#include <QKeyEvent>
#include <QProcess>
#include <QRasterWindow>
#include <QSignalSpy>
#include <QTest>

#include <memory>

using namespace Qt::Literals::StringLiterals;

namespace {

// Keys of this display by their codes; what they type is up to the layout.
enum Key {
    Tab = 23,
    Q = 24,
    Control = 37,
    F = 41,
    Shift = 50,
    Backslash = 51,
    Alt = 64,
    CapsLock = 66,
    F5 = 71,
    NumLock = 77,
    OtherHome = 97,
    RightAlt = 108,
    Home = 110,
    Super = 133,
    F20 = 198
};
using Keys = QList<int>;

const HotKeyCombination controlTab { .key = u"TAB"_s, .control = true };

bool run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    return process.waitForFinished() && process.exitCode() == 0;
}

bool type(const QString &action, const Keys &keys)
{
    QStringList chord;
    for (const int key : keys) {
        chord.append(QString::number(key));
    }
    return run(u"xdotool"_s, { action, chord.join(u'+') });
}
bool press(const Keys &keys)
{
    return type(u"keydown"_s, keys);
}
bool release(const Keys &keys)
{
    return type(u"keyup"_s, keys);
}
bool strike(const Keys &keys)
{
    return type(u"key"_s, keys);
}

// Keeps what is typed into it.
class TypedInto final : public QRasterWindow
{
public:
    QString text;
    QList<int> keys;

protected:
    void keyPressEvent(QKeyEvent *event) override
    {
        text += event->text();
        keys.append(event->key());
    }
};

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

    bool holdKey(Key key, quint16 modifiers)
    {
        return isDone(xcb_grab_key_checked(_connection, 0, _root, modifiers, xcb_keycode_t(key),
            XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
    }
    bool letGoOfKey(Key key)
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
    bool end(const XConnection &connection)
    {
        return isDone(xcb_kill_client_checked(
            _connection, xcb_get_setup(connection.get())->resource_id_base));
    }

private:
    bool isDone(xcb_void_cookie_t cookie)
    {
        return XReply<xcb_generic_error_t>(xcb_request_check(_connection, cookie)) == nullptr;
    }

    xcb_connection_t *_connection;
    xcb_window_t _root;
};

// What the desktop makes for us, in the open.
struct Program
{
    XConnection connection;
    XKeyboard keyboard { connection };
    XHotKey hotKey { keyboard };
    XModifierTap tap { keyboard };
    QSignalSpy pressed { &hotKey, &HotKey::pressed };
    QSignalSpy registration { &hotKey, &HotKey::registrationChanged };
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
    void anotherLayout_keepsThePhysicalKey();
    void anotherKeyboard_hasTheKeyElsewhere();
    void whatAnotherHolds_isNotTaken();
    void letGo_itIsFreeForOthers();
    void theTap_hearsWhatIsTypedElsewhere();
    void theTap_sleepsWhileItIsOff();
    void withoutDisplay_thereIsAReason();

private:
    bool setKeyboard(const QString &what, const QString &name);
    bool hasArrived(const QSignalSpy &spy, qsizetype count);

    std::unique_ptr<Program> _ours;
};

void HotKeyTest::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
    QVERIFY(run(u"setxkbmap"_s, { u"-keycodes"_s, u"evdev"_s, u"-layout"_s, u"us"_s }));
    _ours = std::make_unique<Program>();
}

void HotKeyTest::cleanup()
{
    for (const int key : { Tab, F5, F, Control }) {
        QVERIFY(release({ key }));
    }
    _ours.reset();
}

bool HotKeyTest::setKeyboard(const QString &what, const QString &name)
{
    _ours->maps.clear();
    return run(u"setxkbmap"_s, { what, name }) && (!_ours->maps.isEmpty() || _ours->maps.wait());
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
    quint32 before = 0;
    for (const Keys &locks : QList<Keys> { {}, { CapsLock }, { NumLock }, { CapsLock, NumLock } }) {
        const auto toggle = [&] { return locks.isEmpty() || strike(locks); };
        QVERIFY(toggle());
        const auto unlock = qScopeGuard(toggle);
        QVERIFY(strike(chord));
        QVERIFY(hasArrived(_ours->pressed, 1));
        const auto stamp = _ours->pressed.takeFirst().at(0).value<ActivationStamp>();
        QVERIFY(stamp.time > before && stamp.startupId.isEmpty());
        before = stamp.time;
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
    QVERIFY(setKeyboard(u"-layout"_s, u"fr"_s));
    QVERIFY(press({ Tab }));
    QCOMPARE(_ours->pressed.size(), 1);
    QVERIFY(release({ Tab }));
    QVERIFY(strike({ Control, Tab }));
    QVERIFY(hasArrived(_ours->pressed, 2));
}

void HotKeyTest::held_itLetsOtherKeysThrough()
{
    TypedInto window;
    window.resize(80, 60);
    window.show();
    window.requestActivate();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    QCOMPARE(_ours->hotKey.registerKey({ .key = u"FK05"_s }), QString());
    QVERIFY(press({ F5 }));
    QTRY_COMPARE(_ours->pressed.size(), 1);
    // Before we get to hear of the first of them, and after.
    QVERIFY(strike({ Shift, F }));
    QVERIFY(strike({ Q }));
    QTRY_COMPARE(window.text, u"Fq"_s);
    QVERIFY(strike({ Q }));
    QTRY_COMPARE(window.text, u"Fqq"_s);
    QVERIFY(release({ F5 }));
    QVERIFY(strike({ F5 }));
    QVERIFY(hasArrived(_ours->pressed, 2));
    QVERIFY(!window.keys.contains(Qt::Key_F5));
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

void HotKeyTest::anotherLayout_keepsThePhysicalKey()
{
    const HotKeyCombination optionQ { .key = u"AD01"_s, .option = true };
    QCOMPARE(_ours->hotKey.registerKey(optionQ), QString());
    for (const char *layout : { "fr", "us(dvorak)", "ru", "us,ru" }) {
        QVERIFY(setKeyboard(u"-layout"_s, QString::fromLatin1(layout)));
        QVERIFY(strike({ Alt, Q }));
        QVERIFY(hasArrived(_ours->pressed, 1));
        // Also when it was that layout from the beginning.
        QCOMPARE(_ours->hotKey.registerKey(optionQ), QString());
        QVERIFY(strike({ Alt, Q }));
        QVERIFY(hasArrived(_ours->pressed, 2));
        _ours->pressed.clear();
    }
    QVERIFY(_ours->registration.isEmpty());
}

void HotKeyTest::anotherKeyboard_hasTheKeyElsewhere()
{
    QCOMPARE(_ours->hotKey.registerKey({ .key = u"HOME"_s }), QString());
    QVERIFY(setKeyboard(u"-keycodes"_s, u"xfree86"_s));
    QVERIFY(strike({ Home }));
    QVERIFY(strike({ OtherHome }));
    QVERIFY(hasArrived(_ours->pressed, 1));
    QVERIFY(_ours->registration.isEmpty());
    // This one is not there at all.
    const QString whyNot = _ours->hotKey.registerKey({ .key = u"FK20"_s });
    QVERIFY(!whyNot.isEmpty());
    QVERIFY(setKeyboard(u"-keycodes"_s, u"evdev"_s));
    QVERIFY(strike({ F20 }));
    QVERIFY(hasArrived(_ours->pressed, 2));
    QVERIFY(setKeyboard(u"-keycodes"_s, u"xfree86"_s));
    // Nobody asks for it any more.
    _ours->hotKey.unregisterKey();
    QVERIFY(setKeyboard(u"-keycodes"_s, u"evdev"_s));
    QCOMPARE(_ours->registration, (QList<QVariantList> { { QString() }, { whyNot } }));
}

void HotKeyTest::whatAnotherHolds_isNotTaken()
{
    OtherProgram other;
    // Part of what we want is enough.
    QVERIFY(other.holdKey(Tab, XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_LOCK));
    QCOMPARE(_ours->hotKey.registerKey({ .key = u"FK05"_s }), QString());
    QCOMPARE(_ours->hotKey.registerKey(controlTab), u"another program holds this key"_s);
    // Nothing of it is kept, and nothing of what was held before.
    QVERIFY(other.letGoOfKey(Tab));
    QTRY_VERIFY(other.holdKey(Tab, XCB_MOD_MASK_CONTROL));
    QTRY_VERIFY(other.holdKey(F5, XCB_MOD_MASK_ANY));
    QVERIFY(other.letGoOfKey(Tab));
    QCOMPARE(_ours->hotKey.registerKey(controlTab), QString());
    QVERIFY(!other.holdKey(Tab, XCB_MOD_MASK_CONTROL));
    QVERIFY(strike({ Control, Tab }));
    QVERIFY(hasArrived(_ours->pressed, 1));
}

void HotKeyTest::letGo_itIsFreeForOthers()
{
    const std::unique_ptr<Desktop> other = makeFreedesktopDesktop();
    const QSignalSpy theirs(&other->hotKey(), &HotKey::pressed);
    QCOMPARE(_ours->hotKey.registerKey(controlTab), QString());
    QVERIFY(!other->hotKey().registerKey(controlTab).isEmpty());
    _ours->hotKey.unregisterKey();
    QTRY_COMPARE(other->hotKey().registerKey(controlTab), QString());
    QVERIFY(strike({ Control, Tab }));
    QTRY_COMPARE(theirs.size(), 1);
    QVERIFY(hasArrived(_ours->pressed, 0));
    // Whoever goes lets go.
    auto late = std::make_unique<XHotKey>(_ours->keyboard);
    QCOMPARE(late->registerKey({ .key = u"FK05"_s }), QString());
    QVERIFY(!other->hotKey().registerKey({ .key = u"FK05"_s }).isEmpty());
    late.reset();
    QTRY_COMPARE(other->hotKey().registerKey({ .key = u"FK05"_s }), QString());
}

void HotKeyTest::theTap_hearsWhatIsTypedElsewhere()
{
    QVERIFY(setKeyboard(u"-layout"_s, u"fr"_s));
    OtherProgram other;
    QVERIFY(_ours->tap.setUp() && !_ours->tap.isEnabled());
    const QList<std::pair<Key, Qt::KeyboardModifier>> keys { { Shift, Qt::ShiftModifier },
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
    QCOMPARE(_ours->hotKey.registerKey(controlTab), QString());
    _ours->tap.setEnabled(true);
    // There has to be something of ours by which we are known.
    QVERIFY(hasArrived(_ours->pressed, 0));
    QVERIFY(OtherProgram().end(_ours->connection));
    QTRY_COMPARE(_ours->registration.size(), 1);
    const QString why = _ours->registration.at(0).at(0).toString();
    QVERIFY(!why.isEmpty());
    QCOMPARE(_ours->hotKey.registerKey(controlTab), why);
    _ours->hotKey.unregisterKey();
    _ours->tap.setEnabled(false);

    const QByteArray display = qgetenv("DISPLAY");
    const auto restore = qScopeGuard([&] { qputenv("DISPLAY", display); });
    for (const char *other : { "", ":9999" }) {
        qputenv("DISPLAY", other);
        const std::unique_ptr<Desktop> desktop = makeFreedesktopDesktop();
        QCOMPARE(desktop->hotKey().registerKey(controlTab), why);
        desktop->modifierTap().setEnabled(true);
        QVERIFY(!desktop->modifierTap().setUp() && !desktop->modifierTap().isEnabled());
    }
}

QTEST_MAIN(HotKeyTest)

#include "HotKeyTest.moc"
