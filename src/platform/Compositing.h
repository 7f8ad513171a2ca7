// Whether the display blends windows with what lies behind them. Where it does not, what is
// translucent in a window is black.
//
// The base class is a display that does not.

#pragma once

class Compositing
{
public:
    virtual ~Compositing() = default;

    // It may be switched on and off at any time. Quick enough to be asked before each effect.
    virtual bool isActive() const { return false; }
};
