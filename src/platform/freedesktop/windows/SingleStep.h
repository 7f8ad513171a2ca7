// Lets what a window manager does to a window be seen in one step.
//
// A window manager takes hundreds of requests to change the size of one window: for its frame, the
// frame's parts and colours, the window itself. Where each request is drawn on the screen, a window
// with the picture of what is there lies above them until all is done; it takes no input, and the
// window manager knows nothing of it. Where a compositor draws, the X server serves the window
// manager first, so that the compositor does not come in between.

#pragma once

#include <QRect>

#include <xcb/xcb.h>

class SingleStep final
{
public:
    // The connection outlives this. It has asked for the version of the XFixes extension.
    SingleStep(xcb_connection_t *connection, xcb_window_t root);
    ~SingleStep();
    Q_DISABLE_COPY_MOVE(SingleStep)

    // The area is what the window covers before or after, in pixels of the root window. Ignored
    // while another step is under way.
    void begin(xcb_window_t window, const QRect &area, bool isComposited);
    void end();

    // For a window that is about to be hidden: takes what the window manager has around it off the
    // screen. It would be seen empty until the window manager takes it away.
    static void takeFrameAway(xcb_connection_t *connection, xcb_window_t window);

private:
    void cover(const QRect &area);

    xcb_connection_t *const _connection;
    const xcb_window_t _root;
    // None while no step is under way, or the window has no frame.
    xcb_window_t _frame = XCB_WINDOW_NONE;
    xcb_window_t _cover = XCB_WINDOW_NONE;
};
