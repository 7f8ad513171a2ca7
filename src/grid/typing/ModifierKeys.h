// Which modifier keys are down.

#pragma once

#include <Qt>

struct ModifierKeys
{
    bool shift = false;
    bool control = false;
    bool option = false;
    bool command = false;
    bool function = false;

    // Whether a key, as Qt numbers it, is one of them.
    static bool isModifier(int key)
    {
        return key == Qt::Key_Shift || key == Qt::Key_Control || key == Qt::Key_Alt
            || key == Qt::Key_AltGr || key == Qt::Key_Meta;
    }
    // The key people hold for commands, labelled Ctrl, is command; the one with the desktop's sign
    // is control.
    static ModifierKeys of(Qt::KeyboardModifiers modifiers)
    {
        return { modifiers.testFlag(Qt::ShiftModifier), modifiers.testFlag(Qt::MetaModifier),
            modifiers.testFlag(Qt::AltModifier), modifiers.testFlag(Qt::ControlModifier),
            modifiers.testFlag(Qt::GroupSwitchModifier) };
    }

    bool operator==(const ModifierKeys &other) const = default;
};

// Takes no account of modifiers that are held for another reason, until they are released.
class HeldModifiers final
{
public:
    void ignore(Qt::KeyboardModifiers modifiers) { _ignored = modifiers; }
    // Which of those that are held now count.
    ModifierKeys counted(Qt::KeyboardModifiers held)
    {
        _ignored &= held;
        return ModifierKeys::of(held & ~_ignored);
    }

private:
    Qt::KeyboardModifiers _ignored;
};
