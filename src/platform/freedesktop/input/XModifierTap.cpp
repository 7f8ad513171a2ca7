#include "platform/freedesktop/input/XModifierTap.h"

XModifierTap::XModifierTap(XKeyboard &keyboard)
    : _keyboard(keyboard)
{
    connect(&_keyboard, &XKeyboard::heldModifiersChanged, this, &XModifierTap::handleChange);
}

void XModifierTap::setEnabled(bool isEnabled)
{
    if (isEnabled == _isEnabled || !_keyboard.isUsable()) {
        return;
    }
    _isEnabled = isEnabled;
    _keyboard.setModifiersWatched(isEnabled);
    if (isEnabled) {
        // What is down by now went down before.
        _held = modifiersIn(_keyboard.heldModifiers());
    }
}

Qt::KeyboardModifiers XModifierTap::modifiersIn(quint16 bits) const
{
    const XKeyboard::Modifiers &modifiers = _keyboard.modifiers();
    Qt::KeyboardModifiers held;
    held.setFlag(Qt::ShiftModifier, (bits & XCB_MOD_MASK_SHIFT) != 0);
    held.setFlag(Qt::ControlModifier, (bits & XCB_MOD_MASK_CONTROL) != 0);
    held.setFlag(Qt::AltModifier, (bits & modifiers.option) != 0);
    held.setFlag(Qt::MetaModifier, (bits & modifiers.command) != 0);
    held.setFlag(Qt::GroupSwitchModifier, (bits & modifiers.thirdLevel) != 0);
    return held;
}

void XModifierTap::handleChange(quint16 bits)
{
    const Qt::KeyboardModifiers held = modifiersIn(bits);
    // The last events of the time before it was switched off may still come.
    if (_isEnabled && held != _held) {
        _held = held;
        Q_EMIT changed(held);
    }
}
