// Messages between the clients of an X server.

#pragma once

#include <QList>

#include <xcb/xcb.h>

namespace XMessage {

// About a window, with at most five words of data.
xcb_client_message_event_t make(
    xcb_window_t window, xcb_atom_t type, const QList<quint32> &data = {});

// Only to clients that have selected an event of the mask on the receiver; without a mask to the
// client that made it.
void send(xcb_connection_t *connection, xcb_window_t receiver, quint32 mask,
    const xcb_client_message_event_t &message);

} // namespace XMessage
