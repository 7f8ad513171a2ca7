#include "platform/freedesktop/x11/XConnection.h"

#include "platform/freedesktop/x11/XAtoms.h"
#include "platform/freedesktop/x11/XClock.h"
#include "platform/freedesktop/x11/XMessage.h"

#include <QAbstractEventDispatcher>

#include <algorithm>
#include <string>
#include <string_view>

namespace {

constexpr std::array<std::string_view, XConnection::AtomCount> atomNames {
    "_NET_ACTIVE_WINDOW",
    "_NET_CLIENT_LIST",
    "_NET_CLOSE_WINDOW",
    "_NET_CURRENT_DESKTOP",
    "_NET_STARTUP_ID",
    "_NET_STARTUP_INFO",
    "_NET_STARTUP_INFO_BEGIN",
    "_NET_SUPPORTING_WM_CHECK",
    "_NET_WM_DESKTOP",
    "_NET_WM_NAME",
    "_NET_WM_PID",
    "_NET_WM_STATE",
    "_NET_WM_STATE_ABOVE",
    "_NET_WM_STATE_HIDDEN",
    "_NET_WM_STATE_SKIP_PAGER",
    "_NET_WM_STATE_SKIP_TASKBAR",
    "_NET_WM_STATE_STICKY",
    "_NET_WM_WINDOW_TYPE",
    "_NET_WM_WINDOW_TYPE_DESKTOP",
    "_NET_WM_WINDOW_TYPE_DIALOG",
    "_NET_WM_WINDOW_TYPE_DOCK",
    "_NET_WM_WINDOW_TYPE_NORMAL",
    "_NET_WM_WINDOW_TYPE_UTILITY",
    "_GTK_APPLICATION_ID",
    "_KDE_NET_WM_DESKTOP_FILE",
    "UTF8_STRING",
    "WM_CHANGE_STATE",
    "WM_CLASS",
    "WM_CLIENT_MACHINE",
    "WM_DELETE_WINDOW",
    "WM_PROTOCOLS",
    "WM_TRANSIENT_FOR",
    "XdndSelection",
    "_XSETTINGS_SETTINGS",
    "_NET_WM_CM_S",
    "_XSETTINGS_S",
};

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
    _nextTurn.setSingleShot(true);
    connect(&_nextTurn, &QTimer::timeout, this, &XConnection::takeEvents);
    if (const auto *const loop = QAbstractEventDispatcher::instance()) {
        // Which of the two comes depends on whether the loop may wait.
        connect(loop, &QAbstractEventDispatcher::aboutToBlock, this, &XConnection::noticeQueued);
        connect(loop, &QAbstractEventDispatcher::awake, this, &XConnection::noticeQueued);
    }
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
    _connection = xcb_connect(nullptr, &_screen);
    if (xcb_connection_has_error(_connection) != 0) {
        return false;
    }
    _root = rootOf(_connection, _screen);
    return true;
}

xcb_window_t XConnection::rootOf(xcb_connection_t *connection, int screen)
{
    xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (int before = screen; screens.rem > 1 && before > 0; --before) {
        xcb_screen_next(&screens);
    }
    return screens.data->root;
}

bool XConnection::findAtoms()
{
    std::array<std::string, AtomCount> names;
    std::transform(atomNames.begin(), atomNames.end(), names.begin(),
        [](std::string_view name) { return std::string(name); });
    for (size_t i = CompositingManager; i < AtomCount; ++i) {
        names[i] += std::to_string(_screen);
    }
    _atoms = atomsNamed(_connection, names);
    return std::find(_atoms.cbegin(), _atoms.cend(), XCB_ATOM_NONE) == _atoms.cend();
}

void XConnection::tellManager(xcb_window_t window, Atom message, const QList<quint32> &data)
{
    if (isOpen()) {
        tellManagerOver(_connection, window, message, data);
        flushFromAnyThread();
    }
}

void XConnection::tellManagerOver(xcb_connection_t *connection, xcb_window_t window, Atom message,
    const QList<quint32> &data) const
{
    XMessage::send(connection, _root,
        XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
        XMessage::make(window, atom(message), data));
}

void XConnection::map(xcb_window_t window)
{
    if (isOpen()) {
        xcb_map_window(_connection, window);
        flushFromAnyThread();
    }
}

void XConnection::askTime()
{
    if (!isOpen()) {
        return;
    }
    if (_clock == XCB_WINDOW_NONE) {
        _clock = XClock::make(_connection, _root);
        connect(this, &XConnection::eventArrived, this, &XConnection::takeTime);
    }
    XClock::ask(_connection, _clock);
}

void XConnection::takeTime(const xcb_generic_event_t *event)
{
    if (const std::optional<quint32> time = XClock::timeIn(event, _clock)) {
        Q_EMIT timeTold(*time);
    }
}

// Another thread may read events while it sends, and ours may be waiting for the socket.
void XConnection::flushFromAnyThread()
{
    xcb_flush(_connection);
    QMetaObject::invokeMethod(
        this, [this] { _nextTurn.start(); }, Qt::QueuedConnection);
}

// The socket does not wake us for what the library has read already.
void XConnection::noticeQueued()
{
    if (_queued || !isOpen()) {
        return;
    }
    _queued.reset(xcb_poll_for_queued_event(_connection));
    if (_queued || xcb_connection_has_error(_connection) != 0) {
        _nextTurn.start();
    }
}

// One lot at a time, so that windows that never stop changing leave time for everything else.
void XConnection::takeEvents()
{
    XReply<xcb_generic_event_t> event;
    const auto next = [&] {
        event = std::move(_queued);
        if (!event && isOpen()) {
            event.reset(xcb_poll_for_event(_connection));
        }
        return event != nullptr;
    };
    bool hasAny = false;
    while (next()) {
        hasAny = true;
        Q_EMIT eventArrived(event.get());
    }
    if (hasAny) {
        Q_EMIT eventsTaken();
    }
    if (isOpen() && xcb_connection_has_error(_connection) != 0) {
        _isOpen = false;
        _notifier.reset();
        Q_EMIT closed();
    }
}
