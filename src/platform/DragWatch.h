// Tells that the program from which something is dragged has ended in the middle of the drag: Qt
// does not say so, and nothing else follows.
//
// The base class is a desktop that cannot tell.

#pragma once

#include <QObject>

class DragWatch : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    // To be called when a drag of another program enters one of our windows; takes the place of the
    // watch before. Nothing is asked of the system before the first call.
    virtual void watch() { }
    // To be called when the drag leaves or ends. Nothing is announced after it.
    virtual void stop() { }

Q_SIGNALS:
    // Once a watch, which is then over.
    void sourceGone();
};
