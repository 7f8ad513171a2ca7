// What the X server itself paints a window with, until the program does.
//
// A window manager changes the size of a window in its own time; until the program has heard of it
// and painted, the window shows what the server makes of it. With a picture as its background the
// window has its new content in the same step as its new size.

#pragma once

#include <xcb/xcb.h>

class QImage;

namespace XBackground {

// The server paints a window of the picture's size, in pixels, with the picture as soon as the
// window is mapped or resized. False, and nothing is changed, when the window is not of the depth
// of a picture with alpha.
bool set(xcb_connection_t *connection, xcb_window_t window, const QImage &picture);

// The server leaves a window as it is, and keeps its content when it is resized.
void clear(xcb_connection_t *connection, xcb_window_t window);

} // namespace XBackground
