// A key that summons the program from anywhere in the session.
//
// The base class is a desktop that gives no program such a key.

#pragma once

#include "platform/ActivationStamp.h"

#include <QObject>
#include <QStringList>

class QWindow;

// A physical key with modifier keys, whatever is printed on it in the keyboard layout of the day.
struct HotKeyCombination
{
    // The desktop's own name of the key's place on the keyboard.
    QString key;
    bool control = false;
    bool option = false;
    bool command = false;
    bool shift = false;
};

class HotKey : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    // Takes the key, and lets go of the one before in any case. Returns why it cannot be had, in a
    // few words, in English for the log; empty when it was taken, or when that is still to be
    // decided: registrationChanged() then tells of a refusal. Logs nothing.
    virtual QString registerKey(const HotKeyCombination & /*combination*/)
    {
        return QStringLiteral(QT_TRANSLATE_NOOP("Reason", "this desktop offers no hot keys"));
    }
    virtual void unregisterKey() { }
    // How the user binds a key to the program in the settings of the desktop, as a sentence; empty
    // where that is no better than another key.
    virtual QString settingsAdvice() const
    {
        return tr("Bind the command \"ortu --toggle\" to a key in the settings of your desktop.");
    }
    // The names of a key's place, any of which a combination may use, by the native scan code of a
    // key event. None where the desktop cannot tell.
    virtual QStringList namesOfKey(quint32 /*nativeScanCode*/) const { return {}; }
    // To be called while pressed() is emitted, with a window that comes to the front because of
    // it: what is typed after the press waits until that window has the keyboard, for half a second
    // at most. Without this call it goes at once to the window that has the keyboard then.
    virtual void handKeysTo(const QWindow & /*window*/) { }

Q_SIGNALS:
    // Once for each time it goes down, however long it is held.
    void pressed(const ActivationStamp &stamp);
    // The key was lost after it had been taken, or could be taken after all; why as above.
    void registrationChanged(const QString &whyNot);
};
