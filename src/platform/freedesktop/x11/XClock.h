// The present time of an X server, in its own milliseconds: the server reports every change of a
// property with its time, even one that adds nothing.

#pragma once

#include <QtGlobal>

#include <optional>
#include <xcb/xcb.h>

namespace XClock {

// A window that is never shown, whose property tells the time.
xcb_window_t make(xcb_connection_t *connection, xcb_window_t root);

// Asks for the time; it comes as an event.
void ask(xcb_connection_t *connection, xcb_window_t clock);

// The time when the event is the one that tells it.
std::optional<quint32> timeIn(const xcb_generic_event_t *event, xcb_window_t clock);

} // namespace XClock
