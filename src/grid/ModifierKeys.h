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
