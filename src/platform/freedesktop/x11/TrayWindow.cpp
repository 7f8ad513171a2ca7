#include "platform/freedesktop/x11/TrayWindow.h"

#include "platform/freedesktop/x11/XAtoms.h"

#include <string>
#include <string_view>

TrayWindow::TrayWindow(QObject *parent)
    : QObject(parent)
{
    if (!_connection.isOpen()) {
        return;
    }
    // Each screen has a tray of its own.
    const std::string selection = "_NET_SYSTEM_TRAY_S" + std::to_string(_connection.screen());
    _atoms = atomsNamed(
        _connection.get(), std::array<std::string_view, AtomCount> { selection, "MANAGER" });
    connect(&_connection, &XConnection::eventArrived, this, &TrayWindow::handleEvent);
    connect(&_connection, &XConnection::closed, this, [this] {
        setTray(XCB_WINDOW_NONE);
        takeDocking();
    });
    // New trays tell the root window.
    listenTo(_connection.root());
    takeTray();
}

void TrayWindow::follow(xcb_window_t window)
{
    if (window != _window) {
        _window = window;
        if (window != XCB_WINDOW_NONE && _connection.isOpen()) {
            listenTo(window);
        }
        takeDocking();
    }
}

void TrayWindow::listenTo(xcb_window_t window)
{
    const quint32 mask = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(_connection.get(), window, XCB_CW_EVENT_MASK, &mask);
    xcb_flush(_connection.get());
}

void TrayWindow::handleEvent(const xcb_generic_event_t *event)
{
    switch (event->response_type & 0x7f) {
    case XCB_CLIENT_MESSAGE: {
        const auto *const message = reinterpret_cast<const xcb_client_message_event_t *>(event);
        if (message->type == _atoms[Manager] && message->data.data32[1] == _atoms[Selection]) {
            takeTray();
        }
        break;
    }
    case XCB_DESTROY_NOTIFY:
        if (reinterpret_cast<const xcb_destroy_notify_event_t *>(event)->window == _tray) {
            takeTray();
        }
        takeDocking();
        break;
    case XCB_MAP_NOTIFY:
    case XCB_UNMAP_NOTIFY:
    case XCB_REPARENT_NOTIFY:
        takeDocking();
        break;
    case 0:
        // It went before we could listen.
        if (reinterpret_cast<const xcb_generic_error_t *>(event)->resource_id == _tray) {
            takeTray();
        }
        break;
    default:
        break;
    }
}

void TrayWindow::takeTray()
{
    const XReply<xcb_get_selection_owner_reply_t> reply(xcb_get_selection_owner_reply(
        _connection.get(), xcb_get_selection_owner(_connection.get(), _atoms[Selection]), nullptr));
    const xcb_window_t tray = reply ? reply->owner : xcb_window_t(XCB_WINDOW_NONE);
    if (tray != XCB_WINDOW_NONE && tray != _tray) {
        listenTo(tray);
    }
    setTray(tray);
}

void TrayWindow::setTray(xcb_window_t tray)
{
    if (tray != _tray) {
        _tray = tray;
        Q_EMIT trayChanged();
    }
}

void TrayWindow::takeDocking()
{
    const bool wasDocked = _isDocked;
    _isDocked = _window != XCB_WINDOW_NONE && _connection.isOpen() && isWindowDocked();
    if (_isDocked != wasDocked) {
        Q_EMIT isDockedChanged();
    }
}

bool TrayWindow::isWindowDocked() const
{
    xcb_connection_t *const server = _connection.get();
    const xcb_query_tree_cookie_t askedTree = xcb_query_tree(server, _window);
    const xcb_get_window_attributes_cookie_t askedAttributes =
        xcb_get_window_attributes(server, _window);
    const XReply<xcb_query_tree_reply_t> tree(xcb_query_tree_reply(server, askedTree, nullptr));
    const XReply<xcb_get_window_attributes_reply_t> attributes(
        xcb_get_window_attributes_reply(server, askedAttributes, nullptr));
    return tree && attributes && tree->parent != _connection.root()
        && attributes->map_state != XCB_MAP_STATE_UNMAPPED;
}
