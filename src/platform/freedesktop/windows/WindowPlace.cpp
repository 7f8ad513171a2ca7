#include "platform/freedesktop/windows/WindowPlace.h"

namespace {

// In units of four bytes; a window has a handful of states.
constexpr quint32 longestList = 64;

xcb_get_property_cookie_t ask(
    const XConnection &connection, xcb_window_t window, XConnection::Atom property)
{
    return xcb_get_property(connection.get(), 0, window, connection.atom(property),
        XCB_GET_PROPERTY_TYPE_ANY, 0, longestList);
}

XPropertyReply answer(const XConnection &connection, xcb_get_property_cookie_t cookie)
{
    return XPropertyReply(xcb_get_property_reply(connection.get(), cookie, nullptr));
}

QList<quint32> numbers(const XConnection &connection, xcb_get_property_cookie_t cookie)
{
    return numbersIn(answer(connection, cookie));
}

} // namespace

bool WindowPlace::isOnPresentDesktop(XConnection &connection, xcb_window_t window)
{
    if (!connection.isOpen()) {
        return false;
    }
    const auto attributes = xcb_get_window_attributes(connection.get(), window);
    const auto states = ask(connection, window, XConnection::NetWmState);
    const auto desktop = ask(connection, window, XConnection::NetWmDesktop);
    const auto present = ask(connection, connection.root(), XConnection::NetCurrentDesktop);
    const XReply<xcb_get_window_attributes_reply_t> shown(
        xcb_get_window_attributes_reply(connection.get(), attributes, nullptr));
    const bool isHidden =
        numbers(connection, states).contains(connection.atom(XConnection::NetWmStateHidden));
    const QList<quint32> desktops = numbers(connection, desktop);
    const QList<quint32> presents = numbers(connection, present);
    // Without numbers there is one desktop only.
    const bool isHere = desktops.isEmpty() || presents.isEmpty()
        || desktops.first() == XConnection::EveryDesktop || desktops.first() == presents.first();
    return shown && shown->map_state == XCB_MAP_STATE_VIEWABLE && !isHidden && isHere;
}

bool WindowPlace::hasKeyboard(XConnection &connection, xcb_window_t window)
{
    if (!connection.isOpen()) {
        return false;
    }
    const XReply<xcb_get_input_focus_reply_t> focus(xcb_get_input_focus_reply(
        connection.get(), xcb_get_input_focus(connection.get()), nullptr));
    return focus && focus->focus == window;
}

bool WindowPlace::isPointerPressed(XConnection &connection)
{
    if (!connection.isOpen()) {
        return false;
    }
    const XReply<xcb_query_pointer_reply_t> pointer(xcb_query_pointer_reply(
        connection.get(), xcb_query_pointer(connection.get(), connection.root()), nullptr));
    constexpr quint16 buttons = XCB_BUTTON_MASK_1 | XCB_BUTTON_MASK_2 | XCB_BUTTON_MASK_3;
    return pointer && (pointer->mask & buttons) != 0;
}

QString WindowPlace::windowManagerName(XConnection &connection)
{
    if (!connection.isOpen()) {
        return {};
    }
    const xcb_window_t manager =
        numbers(connection, ask(connection, connection.root(), XConnection::NetSupportingWmCheck))
            .value(0, XCB_WINDOW_NONE);
    if (manager == XCB_WINDOW_NONE) {
        return {};
    }
    return QString::fromUtf8(
        bytesIn(answer(connection, ask(connection, manager, XConnection::NetWmName))));
}
