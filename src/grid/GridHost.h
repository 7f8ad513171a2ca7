// What the grid asks of the window it stands in. The panel is one, a plain window another, a test a
// third.

#pragma once

#include <QSizeF>

class QMouseEvent;

class GridHost
{
public:
    virtual ~GridHost() = default;

    // The largest grid that the window can show, in points; without a positive extent the icons
    // keep their size.
    virtual QSizeF maxIconViewSize() const = 0;

    // An application was launched: the window has done its work.
    virtual void hide() { }

    // Presses and releases that meant no icon; the window may want to be moved by them.
    virtual void mousePressed(QMouseEvent *) { }
    virtual void mouseReleased(QMouseEvent *) { }

    // Whether drags are for the grid: not while a dialog hangs on the window.
    virtual bool iconViewHasUserFocus() const { return true; }
    // Whether the program is active, and making it so.
    virtual bool isProgramActive() const { return true; }
    virtual void makeFrontProcess() { }
    // Gives the front back to the application that had it before.
    virtual void reactivateLastApp() { }
    // Gets the window where all of it can be seen, and back to where it was.
    virtual void slideOnscreen() { }
    virtual void slideBack() { }
};
