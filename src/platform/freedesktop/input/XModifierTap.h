// The modifier keys as the X server reports them: session-wide, and also while another program has
// grabbed the keyboard.

#pragma once

#include "platform/ModifierTap.h"
#include "platform/freedesktop/input/XKeyboard.h"

class XModifierTap final : public ModifierTap
{
    Q_OBJECT

public:
    // The keyboard outlives this.
    explicit XModifierTap(XKeyboard &keyboard);

    bool setUp() override { return _keyboard.isUsable(); }
    void setEnabled(bool isEnabled) override;
    bool isEnabled() const override { return _isEnabled; }

private:
    Qt::KeyboardModifiers modifiersIn(quint16 bits) const;
    void handleChange(quint16 bits);

    XKeyboard &_keyboard;
    bool _isEnabled = false;
    Qt::KeyboardModifiers _held;
};
