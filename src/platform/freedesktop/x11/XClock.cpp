#include "platform/freedesktop/x11/XClock.h"

#include <array>

xcb_window_t XClock::make(xcb_connection_t *connection, xcb_window_t root)
{
    const xcb_window_t clock = xcb_generate_id(connection);
    // In the order of the mask's bits.
    const std::array<quint32, 2> values { 1, XCB_EVENT_MASK_PROPERTY_CHANGE };
    xcb_create_window(connection, XCB_COPY_FROM_PARENT, clock, root, -1, -1, 1, 1, 0,
        XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT,
        XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values.data());
    return clock;
}

void XClock::ask(xcb_connection_t *connection, xcb_window_t clock)
{
    xcb_change_property(
        connection, XCB_PROP_MODE_APPEND, clock, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8, 0, nullptr);
    xcb_flush(connection);
}

std::optional<quint32> XClock::timeIn(const xcb_generic_event_t *event, xcb_window_t clock)
{
    if ((event->response_type & 0x7f) != XCB_PROPERTY_NOTIFY) {
        return {};
    }
    const auto *const change = reinterpret_cast<const xcb_property_notify_event_t *>(event);
    return change->window == clock ? std::optional(change->time) : std::nullopt;
}
