#include "platform/freedesktop/x11/XSelection.h"

#include <xcb/xfixes.h>

namespace {

constexpr quint32 everyChange = XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER
    | XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY
    | XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE;

} // namespace

XSelection::XSelection(XConnection &connection, XConnection::Atom name)
    : _connection(connection)
    , _name(connection.atom(name))
{
    xcb_connection_t *const server = connection.get();
    const xcb_query_extension_reply_t *const extension =
        xcb_get_extension_data(server, &xcb_xfixes_id);
    xcb_xfixes_query_version_cookie_t version {};
    if (extension != nullptr && extension->present != 0) {
        _eventType = extension->first_event + XCB_XFIXES_SELECTION_NOTIFY;
        // The server serves only those who have said which version they speak.
        version = xcb_xfixes_query_version(server, 1, 0);
        // Before the owner is asked for, so that no change is missed.
        xcb_xfixes_select_selection_input(server, connection.root(), _name, everyChange);
    }
    const XReply<xcb_get_selection_owner_reply_t> answer(
        xcb_get_selection_owner_reply(server, xcb_get_selection_owner(server, _name), nullptr));
    if (version.sequence != 0) {
        xcb_discard_reply(server, version.sequence);
    }
    _owner = answer ? answer->owner : xcb_window_t(XCB_WINDOW_NONE);
    connect(&connection, &XConnection::eventArrived, this, &XSelection::handleEvent);
    connect(&connection, &XConnection::closed, this, [this] { setOwner(XCB_WINDOW_NONE); });
}

XSelection::~XSelection()
{
    if (_eventType != 0 && _connection.isOpen()) {
        xcb_xfixes_select_selection_input(_connection.get(), _connection.root(), _name, 0);
        xcb_flush(_connection.get());
    }
}

void XSelection::handleEvent(const xcb_generic_event_t *event)
{
    if (_eventType == 0 || (event->response_type & 0x7f) != _eventType) {
        return;
    }
    const auto *const change = reinterpret_cast<const xcb_xfixes_selection_notify_event_t *>(event);
    if (change->selection == _name) {
        setOwner(change->owner);
    }
}

void XSelection::setOwner(xcb_window_t owner)
{
    if (owner != _owner) {
        _owner = owner;
        Q_EMIT ownerChanged();
    }
}
