// The program's mark in the desktop's row of status icons.
//
// The base class is a desktop without such a row.

#pragma once

#include "platform/ActivationStamp.h"

#include <QObject>
#include <QPoint>
#include <QRect>

class QIcon;
class QMenu;

class StatusItem : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    // Shows the item, now or once there is a row; `menu` is what the desktop opens by itself where
    // it does not say what was pressed. It must live until hide().
    virtual void show(const QIcon & /*icon*/, const QString & /*toolTip*/, QMenu & /*menu*/) { }
    virtual void setIcon(const QIcon & /*icon*/) { }
    virtual void hide() { }
    // Whether it can really be seen by now.
    virtual bool isShown() const { return false; }
    // Where it lies on the screen, in points with y growing downwards; empty where the desktop does
    // not tell.
    virtual QRect place() const { return {}; }

Q_SIGNALS:
    void isShownChanged(bool isShown);
    // A press of the first button, and what follows; whether the pointer is inside. What is dragged
    // onto the item leaves it like a pointer.
    void pressed(const ActivationStamp &stamp, Qt::KeyboardModifiers modifiers);
    void dragged(bool isInside);
    void released(bool isInside, const ActivationStamp &stamp);
    // The menu is wanted at once; the pointer is at this place of the screen.
    void menuWanted(const QPoint &position);
    // Files or addresses are being dragged onto the item.
    void dragEntered(const ActivationStamp &stamp);
    // The item was chosen, where no presses are reported.
    void activated(const ActivationStamp &stamp);
};
