// The hot key on an X display: taken from all other programs by a passive grab on the root window.
//
// It stays with the same physical key when the layout changes, and is taken anew when another
// keyboard has that key elsewhere.

#pragma once

#include "platform/HotKey.h"
#include "platform/freedesktop/XKeyboard.h"

#include <QTimer>

#include <optional>

class XHotKey final : public HotKey
{
    Q_OBJECT

public:
    // The keyboard outlives this.
    explicit XHotKey(XKeyboard &keyboard);
    ~XHotKey() override;

    QString registerKey(const HotKeyCombination &combination) override;
    void unregisterKey() override;

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
    void takeAgain();
    void lose();
    void handlePress(const xcb_key_press_event_t *event);
    void handleRelease(const xcb_key_release_event_t *event);
    void handOn(const xcb_key_press_event_t *event);
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
};
