#include "platform/freedesktop/XHotKey.h"

#include <chrono>
#include <functional>

using namespace std::chrono_literals;

namespace {

// After which a key that neither repeats nor is released is looked at. Its release may have gone
// to another program, which must not block it for good.
constexpr auto longestSilence = 1s;

// Every combination of the locks may be on, and a grab holds for exactly one.
void forEachCombination(quint16 locks, const std::function<void(quint16)> &act)
{
    quint16 combination = locks;
    do {
        act(combination);
        combination = quint16((combination - 1) & locks);
    } while (combination != locks);
}

} // namespace

XHotKey::XHotKey(XKeyboard &keyboard)
    : _keyboard(keyboard)
{
    _heldCheck.setSingleShot(true);
    _heldCheck.setInterval(longestSilence);
    connect(&_heldCheck, &QTimer::timeout, this, &XHotKey::checkHeld);
    connect(&_keyboard, &XKeyboard::keyPressed, this, &XHotKey::handlePress);
    connect(&_keyboard, &XKeyboard::keyReleased, this, &XHotKey::handleRelease);
    connect(&_keyboard, &XKeyboard::mapChanged, this, &XHotKey::takeAgain);
    connect(&_keyboard.connection(), &XConnection::closed, this, &XHotKey::lose);
}

XHotKey::~XHotKey()
{
    ungrabAll(_taken);
}

QString XHotKey::registerKey(const HotKeyCombination &combination)
{
    unregisterKey();
    _wanted = combination;
    _whyNot = take(combination);
    return _whyNot;
}

void XHotKey::unregisterKey()
{
    ungrabAll(_taken);
    _taken = {};
    _wanted.reset();
    _whyNot.clear();
    _held = 0;
    _heldCheck.stop();
}

XHotKey::Grab XHotKey::grabFor(const HotKeyCombination &combination) const
{
    const XKeyboard::Modifiers &modifiers = _keyboard.modifiers();
    Grab grab;
    grab.keys = _keyboard.keysNamed(combination.key);
    grab.modifiers = quint16((combination.control ? XCB_MOD_MASK_CONTROL : 0)
        | (combination.shift ? XCB_MOD_MASK_SHIFT : 0) | (combination.option ? modifiers.option : 0)
        | (combination.command ? modifiers.command : 0));
    grab.locks = modifiers.locks;
    return grab;
}

// Lets go of what is held only if something else is wanted. Returns why it cannot be had.
QString XHotKey::take(const HotKeyCombination &combination)
{
    if (!_keyboard.connection().isOpen()) {
        return tr("there is no X display");
    }
    if (qEnvironmentVariableIsSet("WAYLAND_DISPLAY")) {
        return tr("Wayland gives no program such a key");
    }
    if (!_keyboard.isUsable()) {
        return tr("this display does not name its keys");
    }
    const Grab grab = grabFor(combination);
    if (grab == _taken) {
        return {};
    }
    ungrabAll(_taken);
    _taken = {};
    if (grab.keys.isEmpty()) {
        return tr("this keyboard has no such key");
    }
    QString whyNot = grabAll(grab);
    if (whyNot.isEmpty()) {
        _taken = grab;
        _held = 0;
        // One that is down already, which is not the user asking for something.
        for (const xcb_keycode_t key : grab.keys) {
            if (_keyboard.isDown(key)) {
                _held = key;
                _heldCheck.start();
            }
        }
    } else {
        ungrabAll(grab);
    }
    return whyNot;
}

QString XHotKey::grabAll(const Grab &grab)
{
    xcb_connection_t *const connection = _keyboard.connection().get();
    const xcb_window_t root = _keyboard.connection().root();
    QList<xcb_void_cookie_t> asked;
    for (const xcb_keycode_t key : grab.keys) {
        forEachCombination(grab.locks, [&](quint16 locks) {
            asked.append(xcb_grab_key_checked(connection, 0, root, grab.modifiers | locks, key,
                XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
        });
    }
    QString whyNot;
    for (const xcb_void_cookie_t cookie : asked) {
        const XReply<xcb_generic_error_t> error(xcb_request_check(connection, cookie));
        if (error && whyNot.isEmpty()) {
            whyNot = error->error_code == XCB_ACCESS ? tr("another program holds this key")
                                                     : tr("the display refuses this key");
        }
    }
    // The requests of a broken connection come to no error.
    if (xcb_connection_has_error(connection) != 0) {
        whyNot = tr("there is no X display");
    }
    _keyboard.connection().takeEventsLater();
    return whyNot;
}

void XHotKey::ungrabAll(const Grab &grab)
{
    XConnection &connection = _keyboard.connection();
    if (grab.keys.isEmpty() || !connection.isOpen()) {
        return;
    }
    for (const xcb_keycode_t key : grab.keys) {
        forEachCombination(grab.locks, [&](quint16 locks) {
            xcb_ungrab_key(connection.get(), key, connection.root(), grab.modifiers | locks);
        });
    }
    xcb_flush(connection.get());
    connection.takeEventsLater();
}

void XHotKey::takeAgain()
{
    if (!_wanted) {
        return;
    }
    const QString whyNot = take(*_wanted);
    if (whyNot != _whyNot) {
        _whyNot = whyNot;
        Q_EMIT registrationChanged(whyNot);
    }
}

void XHotKey::lose()
{
    _taken = {};
    _held = 0;
    _heldCheck.stop();
    takeAgain();
}

void XHotKey::handlePress(const xcb_key_press_event_t *event)
{
    if (!_taken.keys.contains(event->detail)) {
        handOn(event);
        return;
    }
    if (_held == event->detail) {
        _heldCheck.start();
        return;
    }
    if ((event->state & _keyboard.modifiers().four()) != _taken.modifiers) {
        return;
    }
    _held = event->detail;
    _heldCheck.start();
    Q_EMIT pressed({ event->time, {} });
}

void XHotKey::handleRelease(const xcb_key_release_event_t *event)
{
    if (!_taken.keys.contains(event->detail)) {
        handOn(event);
    } else if (event->detail == _held) {
        _held = 0;
        _heldCheck.stop();
    }
}

// While our key is held the server sends us all others too. It could be told to stop at once, but
// then our key would repeat into whatever has the keyboard, or take it away again with each
// repetition. The next key that is typed ends the repeating, and only then do we let go; the
// release of ours then goes elsewhere.
void XHotKey::handOn(const xcb_key_press_event_t *event)
{
    if (_taken.keys.isEmpty() || _keyboard.modifiers().keys.contains(event->detail)) {
        return;
    }
    const bool isPress = (event->response_type & 0x7f) == XCB_KEY_PRESS;
    if (isPress) {
        _keyboard.releaseGrab(event->time);
        _held = 0;
        _heldCheck.stop();
    }
    _keyboard.sendToFocus(event);
}

void XHotKey::checkHeld()
{
    if (_held != 0 && _keyboard.isDown(_held)) {
        _heldCheck.start();
    } else {
        _held = 0;
    }
}
