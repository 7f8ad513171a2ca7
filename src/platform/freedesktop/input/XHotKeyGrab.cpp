#include "platform/freedesktop/input/XHotKeyGrab.h"

#include <chrono>
#include <functional>
#include <utility>

using namespace std::chrono_literals;

namespace {

// After which a key that neither repeats nor is released is looked at. Its release may have gone
// to another program, which must not block it for good.
constexpr auto longestSilence = 1s;

// A program that ends closes its windows first and lets go of its keys a moment later.
constexpr auto pauseBeforeRetry = 300ms;

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

XHotKeyGrab::XHotKeyGrab(XKeyboard &keyboard)
    : _keyboard(keyboard)
{
    const auto setUp = [this](QTimer &timer, std::chrono::milliseconds interval, auto act) {
        timer.setSingleShot(true);
        timer.setInterval(interval);
        connect(&timer, &QTimer::timeout, this, act);
    };
    setUp(_heldCheck, longestSilence, &XHotKeyGrab::checkHeld);
    setUp(_stop, MaxStop, &XHotKeyGrab::letGo);
    setUp(_retry, pauseBeforeRetry, &XHotKeyGrab::takeAgain);
    connect(&_keyboard, &XKeyboard::keyPressed, this, &XHotKeyGrab::handlePress);
    connect(&_keyboard, &XKeyboard::keyReleased, this, &XHotKeyGrab::handleRelease);
    connect(&_keyboard, &XKeyboard::focusTaken, this, &XHotKeyGrab::takeFocus);
    connect(&_keyboard, &XKeyboard::mapChanged, this, &XHotKeyGrab::takeAgain);
    connect(&_keyboard.connection(), &XConnection::eventArrived, this, &XHotKeyGrab::handleEvent);
    connect(&_keyboard.connection(), &XConnection::eventsTaken, this, &XHotKeyGrab::answerRelease);
    connect(&_keyboard.connection(), &XConnection::closed, this, &XHotKeyGrab::lose);
}

XHotKeyGrab::~XHotKeyGrab()
{
    unregisterKey();
    letGo();
}

QString XHotKeyGrab::registerKey(const HotKeyCombination &combination)
{
    unregisterKey();
    _wanted = combination;
    _whyNot = take(combination);
    return _whyNot;
}

// A key that is down stays ours until it is released, and does not repeat into other windows.
void XHotKeyGrab::unregisterKey()
{
    setActiveWindowWatched(false);
    ungrabAll(_taken);
    _taken = {};
    _wanted.reset();
    _whyNot.clear();
}

XHotKeyGrab::Grab XHotKeyGrab::grabFor(const HotKeyCombination &combination) const
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
QString XHotKeyGrab::take(const HotKeyCombination &combination)
{
    if (!_keyboard.connection().isOpen()) {
        return QStringLiteral(QT_TRANSLATE_NOOP("Reason", "there is no X display"));
    }
    if (!_keyboard.isUsable()) {
        return QStringLiteral(QT_TRANSLATE_NOOP("Reason", "this display does not name its keys"));
    }
    const Grab grab = grabFor(combination);
    if (grab == _taken) {
        return {};
    }
    ungrabAll(_taken);
    _taken = {};
    if (grab.keys.isEmpty()) {
        return QStringLiteral(QT_TRANSLATE_NOOP("Reason", "this keyboard has no such key"));
    }
    QString whyNot = grabAll(grab);
    setActiveWindowWatched(!whyNot.isEmpty());
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

QString XHotKeyGrab::grabAll(const Grab &grab)
{
    xcb_connection_t *const connection = _keyboard.connection().get();
    const xcb_window_t root = _keyboard.connection().root();
    QList<xcb_void_cookie_t> asked;
    for (const xcb_keycode_t key : grab.keys) {
        forEachCombination(grab.locks, [&](quint16 locks) {
            asked.append(xcb_grab_key_checked(connection, 0, root, grab.modifiers | locks, key,
                XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_SYNC));
        });
    }
    QString whyNot;
    for (const xcb_void_cookie_t cookie : asked) {
        const XReply<xcb_generic_error_t> error(xcb_request_check(connection, cookie));
        if (error && whyNot.isEmpty()) {
            whyNot = error->error_code == XCB_ACCESS
                ? QStringLiteral(QT_TRANSLATE_NOOP("Reason", "another program holds this key"))
                : QStringLiteral(QT_TRANSLATE_NOOP("Reason", "the display refuses this key"));
        }
    }
    // The requests of a broken connection come to no error.
    if (xcb_connection_has_error(connection) != 0) {
        whyNot = QStringLiteral(QT_TRANSLATE_NOOP("Reason", "there is no X display"));
    }
    return whyNot;
}

void XHotKeyGrab::ungrabAll(const Grab &grab)
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
}

void XHotKeyGrab::leave()
{
    letGo();
    ungrabAll(std::exchange(_taken, {}));
    _held = 0;
    _heldCheck.stop();
    _keyboard.endGrab();
}

void XHotKeyGrab::takeAgain()
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

// The server does not tell when a key becomes free; but when a program ends, another window becomes
// active.
void XHotKeyGrab::setActiveWindowWatched(bool isWatched)
{
    XConnection &connection = _keyboard.connection();
    if (isWatched == _isActiveWindowWatched || !connection.isOpen()) {
        return;
    }
    _isActiveWindowWatched = isWatched;
    _retry.stop();
    const quint32 mask = isWatched ? XCB_EVENT_MASK_PROPERTY_CHANGE : XCB_EVENT_MASK_NO_EVENT;
    xcb_change_window_attributes(connection.get(), connection.root(), XCB_CW_EVENT_MASK, &mask);
    xcb_flush(connection.get());
}

void XHotKeyGrab::handleEvent(const xcb_generic_event_t *event)
{
    if (!_isActiveWindowWatched || (event->response_type & 0x7f) != XCB_PROPERTY_NOTIFY) {
        return;
    }
    const auto *const change = reinterpret_cast<const xcb_property_notify_event_t *>(event);
    const bool isActiveWindow =
        change->atom == _keyboard.connection().atom(XConnection::NetActiveWindow);
    if (isActiveWindow && !_retry.isActive()) {
        _retry.start();
    }
}

void XHotKeyGrab::lose()
{
    _taken = {};
    _held = 0;
    _heldCheck.stop();
    _stopped.reset();
    _stop.stop();
    _released.reset();
    takeAgain();
}

// While our key is down the server sends us all other keys too, and stops the keyboard with each
// until we answer. If the grab ended as soon as the panel has the focus, our key would repeat into
// the panel, or activate the grab again with each repetition. The next key that is typed ends the
// repeating, so the grab ends only then; the release of our key then goes to the panel.
void XHotKeyGrab::handlePress(const xcb_key_press_event_t *event)
{
    _released.reset();
    const bool isOurs = event->detail == _held || _taken.keys.contains(event->detail);
    if (!isOurs && !_keyboard.modifiers().keys.contains(event->detail)) {
        _held = 0;
        _heldCheck.stop();
        _keyboard.replayKey(event->time);
        return;
    }
    const bool isPress = isOurs && event->detail != _held
        && (event->state & _keyboard.modifiers().hotKeyMask()) == _taken.modifiers;
    if (!isPress) {
        if (event->detail == _held) {
            _heldCheck.start();
        }
        _keyboard.takeNextKey(event->time);
        return;
    }
    _held = event->detail;
    _heldCheck.start();
    _stopped = event->time;
    _stop.start();
    Q_EMIT pressed({ event->time, {} });
}

// The release of our key ends the grab by itself, and an answer could let go of the next press if
// both have the same time. So it is not given before everything that came in has been handled: a
// press among that gets an answer of its own.
void XHotKeyGrab::handleRelease(const xcb_key_release_event_t *event)
{
    if (event->detail == _held) {
        _held = 0;
        _heldCheck.stop();
    }
    _released = event->time;
}

void XHotKeyGrab::answerRelease()
{
    if (_released) {
        _keyboard.takeNextKey(*std::exchange(_released, std::nullopt));
    }
}

void XHotKeyGrab::handKeysTo(xcb_window_t window)
{
    if (!_stopped) {
        return;
    }
    if (window == XCB_WINDOW_NONE) {
        letGo();
        return;
    }
    // Before the focus is read, so that no change is missed.
    _awaited = window;
    _keyboard.setFocusWatched(window, true);
    if (_keyboard.isFocusAt(window)) {
        letGo();
    }
}

void XHotKeyGrab::takeFocus(xcb_window_t window)
{
    if (window == _awaited) {
        letGo();
    }
}

void XHotKeyGrab::letGo()
{
    if (!_stopped) {
        return;
    }
    _stop.stop();
    _keyboard.takeNextKey(*std::exchange(_stopped, std::nullopt));
    if (const xcb_window_t window = std::exchange(_awaited, XCB_WINDOW_NONE)) {
        _keyboard.setFocusWatched(window, false);
    }
}

void XHotKeyGrab::checkHeld()
{
    if (_held != 0 && _keyboard.isDown(_held)) {
        _heldCheck.start();
    } else {
        _held = 0;
    }
}
