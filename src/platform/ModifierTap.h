// Listens to the modifier keys of the whole session, whichever window has the keyboard.
//
// The base class is a desktop where that cannot be had.

#pragma once

#include <QObject>

class ModifierTap : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    // To be called once, before anything else. False when there is nothing to listen to.
    virtual bool setUp() { return false; }
    // Nothing is announced, and nothing wakes the program, while it is off; it is off at first.
    virtual void setEnabled(bool /*isEnabled*/) { }
    virtual bool isEnabled() const { return false; }

Q_SIGNALS:
    // Shift, Control, Alt, Meta or the third-level key (Qt::GroupSwitchModifier) has gone down or
    // up. Locks do not count.
    void changed(Qt::KeyboardModifiers modifiers);
};
