// Whether the display blends windows with what lies behind them. Where it does not, what is
// translucent in a window is black.
//
// The base class is a display that does not.

#pragma once

#include <QObject>

class Compositing : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    // Quick enough to be asked before each effect.
    virtual bool isActive() const { return false; }

Q_SIGNALS:
    // It has been switched on or off.
    void changed();
};
