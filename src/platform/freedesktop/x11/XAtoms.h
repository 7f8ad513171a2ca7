// Names as an X server knows them.

#pragma once

#include "platform/freedesktop/x11/XReply.h"

#include <array>
#include <xcb/xcb.h>

// Asks for all of them at once. Those that the server does not answer are none.
template <typename Name, size_t Count>
std::array<xcb_atom_t, Count> atomsNamed(
    xcb_connection_t *connection, const std::array<Name, Count> &names)
{
    std::array<xcb_intern_atom_cookie_t, Count> asked {};
    for (size_t i = 0; i < Count; ++i) {
        asked[i] = xcb_intern_atom(connection, 0, quint16(names[i].size()), names[i].data());
    }
    std::array<xcb_atom_t, Count> atoms {};
    for (size_t i = 0; i < Count; ++i) {
        const XReply<xcb_intern_atom_reply_t> reply(
            xcb_intern_atom_reply(connection, asked[i], nullptr));
        atoms[i] = reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
    }
    return atoms;
}
