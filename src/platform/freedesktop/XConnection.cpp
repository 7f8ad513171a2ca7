#include "platform/freedesktop/XConnection.h"

#include <cstring>
#include <string_view>

namespace {

constexpr std::array<std::string_view, XConnection::AtomCount> atomNames {
    "_NET_ACTIVE_WINDOW",
    "_NET_CLIENT_LIST",
    "_NET_CLOSE_WINDOW",
    "_NET_SUPPORTING_WM_CHECK",
    "_NET_WM_PID",
    "_NET_WM_STATE",
    "_NET_WM_STATE_HIDDEN",
    "_NET_WM_STATE_SKIP_TASKBAR",
    "_NET_WM_WINDOW_TYPE",
    "_NET_WM_WINDOW_TYPE_DESKTOP",
    "_NET_WM_WINDOW_TYPE_DIALOG",
    "_NET_WM_WINDOW_TYPE_DOCK",
    "_NET_WM_WINDOW_TYPE_NORMAL",
    "_NET_WM_WINDOW_TYPE_UTILITY",
    "_GTK_APPLICATION_ID",
    "_KDE_NET_WM_DESKTOP_FILE",
    "WM_CHANGE_STATE",
    "WM_CLASS",
    "WM_CLIENT_MACHINE",
    "WM_DELETE_WINDOW",
    "WM_PROTOCOLS",
    "WM_TRANSIENT_FOR",
};

xcb_client_message_event_t clientMessage(
    xcb_window_t window, xcb_atom_t type, const QList<quint32> &data)
{
    xcb_client_message_event_t message = {};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = type;
    const size_t count = qMin(size_t(data.size()), std::size(message.data.data32));
    std::memcpy(message.data.data32, data.constData(), count * sizeof(quint32));
    return message;
}

void send(xcb_connection_t *connection, xcb_window_t destination, quint32 eventMask,
    const xcb_client_message_event_t &message)
{
    std::array<char, sizeof(message)> bytes {};
    std::memcpy(bytes.data(), &message, sizeof(message));
    xcb_send_event(connection, 0, destination, eventMask, bytes.data());
    xcb_flush(connection);
}

} // namespace

XConnection::XConnection(QObject *parent)
    : QObject(parent)
{
    _isOpen = connectToDisplay() && findAtoms();
    if (!_isOpen) {
        return;
    }
    _notifier = std::make_unique<QSocketNotifier>(
        xcb_get_file_descriptor(_connection), QSocketNotifier::Read);
    connect(_notifier.get(), &QSocketNotifier::activated, this, &XConnection::takeEvents);
}

XConnection::~XConnection()
{
    xcb_disconnect(_connection);
}

bool XConnection::connectToDisplay()
{
    if (qEnvironmentVariableIsEmpty("DISPLAY")) {
        return false;
    }
    int screenNumber = 0;
    _connection = xcb_connect(nullptr, &screenNumber);
    if (xcb_connection_has_error(_connection) != 0) {
        return false;
    }
    xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(_connection));
    for (; screens.rem > 1 && screenNumber > 0; --screenNumber) {
        xcb_screen_next(&screens);
    }
    _root = screens.data->root;
    return true;
}

bool XConnection::findAtoms()
{
    std::array<xcb_intern_atom_cookie_t, AtomCount> cookies {};
    for (size_t i = 0; i < cookies.size(); ++i) {
        cookies[i] =
            xcb_intern_atom(_connection, 0, quint16(atomNames[i].size()), atomNames[i].data());
    }
    for (size_t i = 0; i < cookies.size(); ++i) {
        const XReply<xcb_intern_atom_reply_t> reply(
            xcb_intern_atom_reply(_connection, cookies[i], nullptr));
        if (!reply) {
            return false;
        }
        _atoms[i] = reply->atom;
    }
    return true;
}

void XConnection::tellManager(xcb_window_t window, Atom message, const QList<quint32> &data) const
{
    send(_connection, _root,
        XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
        clientMessage(window, atom(message), data));
}

void XConnection::tellWindow(xcb_window_t window, Atom message, const QList<quint32> &data) const
{
    send(_connection, window, XCB_EVENT_MASK_NO_EVENT, clientMessage(window, atom(message), data));
}

void XConnection::takeEventsLater()
{
    if (!_isTakingDue) {
        _isTakingDue = true;
        QMetaObject::invokeMethod(this, &XConnection::takeEvents, Qt::QueuedConnection);
    }
}

void XConnection::takeEvents()
{
    _isTakingDue = false;
    XReply<xcb_generic_event_t> event;
    const auto next = [&](auto poll) {
        event.reset(isOpen() ? poll(_connection) : nullptr);
        return event != nullptr;
    };
    while (next(xcb_poll_for_event)) {
        // A receiver may wait for answers, and with them more events come in.
        do {
            Q_EMIT eventArrived(event.get());
        } while (next(xcb_poll_for_queued_event));
        Q_EMIT eventsTaken();
    }
    if (isOpen() && xcb_connection_has_error(_connection) != 0) {
        _isOpen = false;
        _notifier.reset();
        Q_EMIT closed();
    }
}
