// The keyboard of an X display: where its keys are, what its modifiers mean, and what is held down.
//
// Keys go by their XKB names, which stay with the place on the keyboard whatever the layout prints
// there. Lives on the main thread.

#pragma once

#include "platform/freedesktop/x11/XConnection.h"

#include <QList>
#include <QObject>
#include <QStringList>

class XKeyboard final : public QObject
{
    Q_OBJECT

public:
    // Which bits of a key event's state mean what; those of Shift and Control never change.
    struct Modifiers
    {
        quint16 option = XCB_MOD_MASK_1;
        quint16 command = XCB_MOD_MASK_4;
        // AltGr; 0 where no key is.
        quint16 thirdLevel = 0;
        // All that stay on when their keys are released, none of the others.
        quint16 locks = XCB_MOD_MASK_LOCK;
        // Of the keys that are modifiers of any kind.
        QList<xcb_keycode_t> keys;

        // The modifiers that a hot key may have.
        quint16 hotKeyMask() const
        {
            return quint16(XCB_MOD_MASK_SHIFT | XCB_MOD_MASK_CONTROL | option | command);
        }
        bool operator==(const Modifiers &) const = default;
    };

    // The connection outlives this.
    explicit XKeyboard(XConnection &connection);

    XConnection &connection() const { return _connection; }
    // False without a display and without names for its keys. Nothing is then found or told.
    bool isUsable() const { return _firstEvent != 0 && _connection.isOpen(); }

    // The keys of a name, which may be an alias; most names have one.
    QList<xcb_keycode_t> keysNamed(const QString &name) const;
    // The name of a key and its aliases; none for a code that is no key.
    QStringList namesOf(quint32 key) const;
    const Modifiers &modifiers() const { return _modifiers; }
    bool isDown(xcb_keycode_t key) const;
    // The modifiers held down, be it by a sticky key, as bits of a key event's state.
    quint16 heldModifiers() const;
    // Whether heldModifiersChanged() is announced; it is not at first.
    void setModifiersWatched(bool areWatched);

    // The two answers to a key event of a synchronous grab of ours; the server keeps back all
    // further keys until one of them is given. takeNextKey() has the next key sent to us as well,
    // replayKey() ends the grab and sends this key and all others where they would have gone
    // without it. The time is that of the event.
    void takeNextKey(xcb_timestamp_t time);
    void replayKey(xcb_timestamp_t time);
    // Ends a grab of ours that is active. The server has done it when this returns.
    void endGrab();

    // Whether the window, or another one of the same program, has the keyboard.
    bool isFocusAt(xcb_window_t window) const;
    // Whether focusTaken() is announced for the window; it is not at first.
    void setFocusWatched(xcb_window_t window, bool isWatched);

Q_SIGNALS:
    // Of keys that are grabbed, and of all others while one of those is down.
    void keyPressed(const xcb_key_press_event_t *event);
    void keyReleased(const xcb_key_release_event_t *event);
    void heldModifiersChanged(quint16 bits);
    void focusTaken(xcb_window_t window);
    // Keys or modifiers may be elsewhere: there is another layout, or another keyboard.
    void mapChanged();

private:
    void setUp();
    void answerKey(quint8 mode, xcb_timestamp_t time);
    void handleEvent(const xcb_generic_event_t *event);
    void handleKeyboardEvent(const xcb_generic_event_t *event);
    void refreshMap();
    void readModifiers();

    XConnection &_connection;
    // Of the extension; 0 where there is none.
    int _firstEvent = 0;
    Modifiers _modifiers;
    bool _isMapDue = false;
};
