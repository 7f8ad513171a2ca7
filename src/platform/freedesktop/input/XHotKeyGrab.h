// The hot key on an X display: taken from all other programs by a passive grab on the root window.
//
// It stays with the same physical key when the layout changes, and is taken anew when another
// keyboard has that key elsewhere. While another program holds it, it is tried again whenever
// another window becomes active.
//
// The grab is synchronous: from the press on, the server keeps back what is typed, in the whole
// session, until we let the keyboard go on. So letters that follow at once reach the window that
// the press brings up. This must live on a thread that is never busy.

#pragma once

#include "platform/HotKey.h"
#include "platform/freedesktop/input/XKeyboard.h"

#include <QTimer>

#include <chrono>
#include <optional>

class XHotKeyGrab final : public QObject
{
    Q_OBJECT

public:
    // How long the keyboard is stopped at most. The panel usually has the focus within 5 ms of the
    // press, and on a heavily loaded machine within 300 ms.
    static constexpr std::chrono::milliseconds MaxStop { 500 };

    // The keyboard outlives this.
    explicit XHotKeyGrab(XKeyboard &keyboard);
    ~XHotKeyGrab() override;

    // As those of HotKey.
    QString registerKey(const HotKeyCombination &combination);
    void unregisterKey();
    QStringList namesOfKey(quint32 nativeScanCode) const
    {
        return _keyboard.namesOf(nativeScanCode);
    }

    // The answer to pressed(): lets the keyboard go on once the window, or another one of the same
    // program, has the focus; at once for no window. Without an answer it goes on after MaxStop.
    void handKeysTo(xcb_window_t window);

    // Leaves the key to others until it is taken again: the program is about to be stopped. The
    // server has done it when this returns.
    void leave();
    // Takes the registered key unless that is done already, and announces a change.
    void takeAgain();

Q_SIGNALS:
    // As those of HotKey.
    void pressed(const ActivationStamp &stamp);
    void registrationChanged(const QString &whyNot);

private:
    // What is asked of the server: some keys with some modifiers, whatever locks are on.
    struct Grab
    {
        QList<xcb_keycode_t> keys;
        quint16 modifiers = 0;
        quint16 locks = 0;

        bool operator==(const Grab &) const = default;
    };

    Grab grabFor(const HotKeyCombination &combination) const;
    QString take(const HotKeyCombination &combination);
    QString grabAll(const Grab &grab);
    void ungrabAll(const Grab &grab);
    void setActiveWindowWatched(bool isWatched);
    void handleEvent(const xcb_generic_event_t *event);
    void lose();
    void handlePress(const xcb_key_press_event_t *event);
    void handleRelease(const xcb_key_release_event_t *event);
    void answerRelease();
    void takeFocus(xcb_window_t window);
    void letGo();
    void checkHeld();

    XKeyboard &_keyboard;
    std::optional<HotKeyCombination> _wanted;
    // Why it was not taken; empty when it was.
    QString _whyNot;
    // Without keys when nothing is taken.
    Grab _taken;
    // The key that is down; 0 for none. It counts again only after it was released.
    xcb_keycode_t _held = 0;
    // Runs while a key is held and does not repeat.
    QTimer _heldCheck { this };

    // The time of the press that has stopped the keyboard; none while it goes on.
    std::optional<xcb_timestamp_t> _stopped;
    QTimer _stop { this };
    // Whose focus is awaited meanwhile.
    xcb_window_t _awaited = XCB_WINDOW_NONE;
    // The time of a release that has not been answered yet.
    std::optional<xcb_timestamp_t> _released;

    // Whether changes of the active window wake us: while another program holds the key.
    bool _isActiveWindowWatched = false;
    QTimer _retry { this };
};
