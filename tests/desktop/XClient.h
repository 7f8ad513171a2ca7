// A client of the X server that is not ours, for tests and benchmarks.

#pragma once

#include <QByteArray>
#include <QList>

#include <cstdlib>
#include <memory>
#include <xcb/xcb.h>

// A client of the X server with a window of its own.
class XClient
{
public:
    XClient()
        : connection(xcb_connect(nullptr, nullptr))
        , root(xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root)
        , window(xcb_generate_id(connection))
    {
        const uint32_t values[] { 1, XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_KEY_PRESS };
        xcb_create_window(connection, XCB_COPY_FROM_PARENT, window, root, 0, 0, 9, 9, 0,
            XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
            XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
        // Start-up messages come to those who look at the root window.
        xcb_change_window_attributes(connection, root, XCB_CW_EVENT_MASK, values + 1);
    }
    ~XClient() { xcb_disconnect(connection); }
    Q_DISABLE_COPY_MOVE(XClient)

    xcb_atom_t atom(const QByteArray &name)
    {
        return reply(xcb_intern_atom_reply(connection,
                         xcb_intern_atom(connection, 0, quint16(name.size()), name), nullptr))
            ->atom;
    }
    bool isDone(xcb_void_cookie_t cookie) { return !reply(xcb_request_check(connection, cookie)); }
    bool own(const QByteArray &selection)
    {
        return isDone(
            xcb_set_selection_owner_checked(connection, window, atom(selection), XCB_CURRENT_TIME));
    }
    bool grabKeyboard()
    {
        const auto answer = reply(xcb_grab_keyboard_reply(connection,
            xcb_grab_keyboard(
                connection, 0, root, XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC),
            nullptr));
        return answer && answer->status == XCB_GRAB_STATUS_SUCCESS;
    }
    // The time of the server.
    quint32 time()
    {
        xcb_change_property(connection, XCB_PROP_MODE_APPEND, window, XCB_ATOM_WM_NAME,
            XCB_ATOM_STRING, 8, 0, nullptr);
        xcb_flush(connection);
        for (;;) {
            const auto event = reply(xcb_wait_for_event(connection));
            const auto *const change =
                reinterpret_cast<const xcb_property_notify_event_t *>(event.get());
            if (isOf(*event, XCB_PROPERTY_NOTIFY) && change->window == window) {
                return change->time;
            }
        }
    }
    template <typename Reply> static std::unique_ptr<Reply, decltype(&std::free)> reply(Reply *raw)
    {
        return { raw, &std::free };
    }
    static bool isOf(const xcb_generic_event_t &event, int type)
    {
        return (event.response_type & 0x7f) == type;
    }

    xcb_connection_t *const connection;
    const xcb_window_t root;
    const xcb_window_t window;
};
