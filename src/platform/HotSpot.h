// An invisible place of the screen that feels the pointer, whatever lies there, also while
// files are being dragged.
//
// The base class is a desktop that has no such places.

#pragma once

#include "platform/ActivationStamp.h"

#include <QObject>
#include <QRect>

class HotSpot : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    // The place in the coordinates of windows; takes the place of the one before. False when there
    // cannot be one.
    virtual bool place(const QRect & /*area*/) { return false; }
    virtual void remove() { }

Q_SIGNALS:
    // Pointers, and drags of files and addresses; every drag is told that nothing is taken here.
    void entered(const ActivationStamp &stamp);
    void left();
};
