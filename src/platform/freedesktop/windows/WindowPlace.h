// Where a window of another program is now, the pointer, who manages windows: questions that are
// asked of the X server when they arise, not followed all the time. Each takes one exchange with
// the server, or two.

#pragma once

#include "platform/freedesktop/x11/XConnection.h"

#include <QString>

namespace WindowPlace {

// Whether the user can see the window, or could if nothing covered it: it is mapped, not put away,
// and on the present desktop or on all of them. False when it is gone.
bool isOnPresentDesktop(XConnection &connection, xcb_window_t window);

// Whether keys go to the window.
bool hasKeyboard(XConnection &connection, xcb_window_t window);

// Whether one of the three ordinary buttons of the pointer is down.
bool isPointerPressed(XConnection &connection);

// What the window manager calls itself; empty when there is none, or it does not say.
QString windowManagerName(XConnection &connection);

} // namespace WindowPlace
