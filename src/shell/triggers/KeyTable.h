// The keys that may serve as hot key: their names for people, the codes by which preferences name
// them, and their places on the keyboard.

#pragma once

#include "platform/HotKey.h"

#include <QCoreApplication>
#include <QList>
#include <QString>

#include <optional>

class KeyTable final
{
    Q_DECLARE_TR_FUNCTIONS(KeyTable)

public:
    struct Key
    {
        QString title;
        // The virtual key code.
        int tag = 0;
        // As the desktop calls it.
        QString place;
    };
    // The bits of the preference "hotKeyModifiers".
    enum Modifier : int { Command = 1 << 8, Shift = 1 << 9, Option = 1 << 11, Control = 1 << 12 };

    // Reads the table from a file of delimited text, by default the program's own. One log line
    // when it cannot be read or holds no key.
    explicit KeyTable(const QString &path = QStringLiteral(":/USExtendedKeycodes.txt"));

    // Those with a title and a tag, in the order of the file, with their titles in the user's
    // language.
    QList<Key> keys() const;

    // For people: the modifiers, for a code that is not negative, and the title of the key. Of a
    // key that has no title, "missing resource" and nothing else.
    QString hotKeyString(int hotKeyCode, int hotKeyModifiers) const;

    // The modifiers alone, each with a plus sign behind it.
    static QString modifierString(int hotKeyModifiers);
    // The code of the first key that has a title and lies at a place of one of these names.
    std::optional<int> codeOf(const QStringList &names) const;

    // Whether the key belongs to every program: grabbed without control, option or command, it
    // would not reach them any more. Function keys do not.
    bool isTaken(int hotKeyCode, int hotKeyModifiers) const;

    // For the desktop. Empty when the code is negative or stands for no key of the table.
    std::optional<HotKeyCombination> combination(int hotKeyCode, int hotKeyModifiers) const;

private:
    const Key *keyOf(int tag) const;

    // Those with a tag.
    QList<Key> _keys;
};
