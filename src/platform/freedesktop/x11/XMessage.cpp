#include "platform/freedesktop/x11/XMessage.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <iterator>

xcb_client_message_event_t XMessage::make(
    xcb_window_t window, xcb_atom_t type, const QList<quint32> &data)
{
    xcb_client_message_event_t message = {};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = type;
    const size_t count = qMin(size_t(data.size()), std::size(message.data.data32));
    std::copy_n(data.constBegin(), count, std::begin(message.data.data32));
    return message;
}

void XMessage::send(xcb_connection_t *connection, xcb_window_t receiver, quint32 mask,
    const xcb_client_message_event_t &message)
{
    std::array<char, sizeof(message)> bytes {};
    std::memcpy(bytes.data(), &message, sizeof(message));
    xcb_send_event(connection, 0, receiver, mask, bytes.data());
}
