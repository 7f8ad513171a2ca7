// What the X library hands out to be freed: replies, events and errors; and the values of
// properties.

#pragma once

#include <QByteArray>
#include <QList>

#include <cstdlib>
#include <memory>
#include <xcb/xcb.h>

struct FreeReply
{
    void operator()(void *reply) const { std::free(reply); }
};
// Null when the request failed: the window is gone, say.
template <typename T> using XReply = std::unique_ptr<T, FreeReply>;

using XPropertyReply = XReply<xcb_get_property_reply_t>;

// A property of 8 bits a value; empty for any other, and when there is none.
inline QByteArray bytesIn(const XPropertyReply &reply)
{
    if (!reply || reply->format != 8) {
        return {};
    }
    return { static_cast<const char *>(xcb_get_property_value(reply.get())),
        xcb_get_property_value_length(reply.get()) };
}

// A property of 32 bits a value; empty for any other, and when there is none.
inline QList<quint32> numbersIn(const XPropertyReply &reply)
{
    if (!reply || reply->format != 32) {
        return {};
    }
    const auto *const start = static_cast<const quint32 *>(xcb_get_property_value(reply.get()));
    return { start, start + xcb_get_property_value_length(reply.get()) / 4 };
}
