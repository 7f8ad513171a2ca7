#include "platform/freedesktop/windows/XOwnWindows.h"

#include "platform/freedesktop/windows/RunningWindows.h"
#include "platform/freedesktop/windows/WindowPlace.h"
#include "platform/freedesktop/windows/XBackground.h"
#include "platform/freedesktop/x11/StartupDisplay.h"

#include <QGuiApplication>
#include <QThreadPool>
#include <QWindow>

namespace {

// Null when it is none of ours.
QWindow *windowOf(xcb_window_t id)
{
    const QWindowList windows = QGuiApplication::topLevelWindows();
    for (QWindow *const window : windows) {
        // To ask for the number of one that has none would make it.
        if (id != XCB_WINDOW_NONE && window->handle() != nullptr && window->winId() == id) {
            return window;
        }
    }
    return nullptr;
}

xcb_window_t idOf(const QWindow *window)
{
    return window != nullptr && window->handle() != nullptr ? xcb_window_t(window->winId())
                                                            : xcb_window_t(XCB_WINDOW_NONE);
}

// An identifier ends with the time of what started it all: `…_TIME12345`. 0 when it does not.
quint32 timeIn(const QString &startupId)
{
    const qsizetype mark = startupId.lastIndexOf(QLatin1String("_TIME"));
    return mark < 0 ? 0 : startupId.mid(mark + 5).toUInt();
}

// Lets the panels know that what was started is there. Off the main thread, because the server has
// to answer.
void endStartup(const QString &startupId)
{
    QThreadPool::globalInstance()->start([id = startupId.toUtf8()] {
        StartupDisplay().broadcast("remove", { { "ID", id } });
    });
}

} // namespace

XOwnWindows::XOwnWindows(RunningWindows &windows, xcb_connection_t *connection)
    : _windows(windows)
    , _connection(connection)
    , _change(connection, windows.connection().root())
{
    disconnect(qGuiApp, nullptr, this, nullptr);
    connect(qGuiApp, &QGuiApplication::focusWindowChanged, this, &XOwnWindows::takeToolkit);
    connect(&_windows, &RunningWindows::activeWindowNamed, this, &XOwnWindows::takeNamed);
    connect(&_windows.connection(), &XConnection::timeTold, this, &XOwnWindows::takeTime);
    connect(&_noneActive, &NoneActive::timeout, this, [this] { setActive(nullptr); });
    _active = idOf(activeWindow());
    rememberFormer(_windows.activeWindow());
}

XOwnWindows::Own &XOwnWindows::ownOf(QWindow &window)
{
    if (!_owns.contains(&window)) {
        connect(&window, &QWindow::visibleChanged, this, [this, &window](bool isVisible) {
            // Qt asks for the window to be shown only after this.
            QMetaObject::invokeMethod(
                &window, [this, &window] { handleShown(window); }, Qt::QueuedConnection);
            if (!isVisible) {
                SingleStep::takeFrameAway(_connection, idOf(&window));
                _owns[&window].stamp.reset();
            }
        });
        connect(&window, &QObject::destroyed, this, [this, &window] { _owns.remove(&window); });
    }
    return _owns[&window];
}

void XOwnWindows::setStanding(QWindow &window, TaskBar taskBar, Level level)
{
    Own &own = ownOf(window);
    own.taskBar = taskBar;
    own.level = level;
    own.isStanding = true;
    if (window.isVisible()) {
        tellStates(window, own);
    } else {
        window.create();
        askForNoFrame(window);
        writeStates(window, own);
    }
}

bool XOwnWindows::isManagedByAwesome()
{
    if (_managerName.isEmpty()) {
        _managerName = WindowPlace::windowManagerName(_windows.connection());
    }
    return _managerName == QLatin1String("awesome");
}

// Qt asks for it by the Motif hints, which the rules that awesome comes with do not look at: they
// give a title bar to every window of the types normal and dialog. Elsewhere a utility window may
// be left out of the task bar.
void XOwnWindows::askForNoFrame(QWindow &window)
{
    if (isManagedByAwesome()) {
        const XConnection &names = _windows.connection();
        const xcb_atom_t type = names.atom(XConnection::NetWmWindowTypeUtility);
        xcb_change_property(_connection, XCB_PROP_MODE_REPLACE, idOf(&window),
            names.atom(XConnection::NetWmWindowType), XCB_ATOM_ATOM, 32, 1, &type);
    }
}

// A window manager takes all states off a window that is hidden, and may get to that only when the
// window is about to be shown again: what was written down then is gone as well. So it is told once
// more.
void XOwnWindows::handleShown(QWindow &window)
{
    if (!window.isVisible()) {
        return;
    }
    Own &own = ownOf(window);
    if (own.isStanding) {
        tellStates(window, own);
        if (isManagedByAwesome()) {
            // The one line that its theme draws round every window.
            constexpr quint32 noBorder = 0;
            xcb_configure_window(
                _connection, idOf(&window), XCB_CONFIG_WINDOW_BORDER_WIDTH, &noBorder);
        }
    }
    const std::optional<ActivationStamp> stamp = own.stamp;
    own.stamp.reset();
    if (stamp) {
        activate(window, *stamp);
    }
}

// Qt adds its own states to these when it shows the window.
void XOwnWindows::writeStates(QWindow &window, const Own &own)
{
    const XConnection &names = _windows.connection();
    QList<quint32> states { names.atom(XConnection::NetWmStateSticky) };
    if (own.taskBar == TaskBar::Skipped) {
        states.append(names.atom(XConnection::NetWmStateSkipTaskbar));
        states.append(names.atom(XConnection::NetWmStateSkipPager));
    }
    if (own.level == Level::Raised) {
        states.append(names.atom(XConnection::NetWmStateAbove));
    }
    const xcb_window_t id = idOf(&window);
    xcb_change_property(_connection, XCB_PROP_MODE_REPLACE, id, names.atom(XConnection::NetWmState),
        XCB_ATOM_ATOM, 32, quint32(states.size()), states.constData());
    xcb_change_property(_connection, XCB_PROP_MODE_REPLACE, id,
        names.atom(XConnection::NetWmDesktop), XCB_ATOM_CARDINAL, 32, 1,
        &XConnection::EveryDesktop);
    // That was for the last time, and would speak of a time long past.
    if (std::exchange(_owns[&window].hasStartupId, false)) {
        xcb_delete_property(_connection, id, names.atom(XConnection::NetStartupId));
    }
}

void XOwnWindows::tellStates(QWindow &window, const Own &own)
{
    const XConnection &manager = _windows.connection();
    const xcb_window_t id = idOf(&window);
    manager.tellManagerOver(_connection, id, XConnection::NetWmState,
        { quint32(own.taskBar == TaskBar::Skipped),
            manager.atom(XConnection::NetWmStateSkipTaskbar),
            manager.atom(XConnection::NetWmStateSkipPager), XConnection::FromApplication });
    manager.tellManagerOver(_connection, id, XConnection::NetWmState,
        { 1, manager.atom(XConnection::NetWmStateSticky), 0, XConnection::FromApplication });
    manager.tellManagerOver(_connection, id, XConnection::NetWmDesktop,
        { XConnection::EveryDesktop, XConnection::FromApplication });
    tellLevel(window, own.level);
}

void XOwnWindows::tellLevel(QWindow &window, Level level)
{
    const XConnection &manager = _windows.connection();
    manager.tellManagerOver(_connection, idOf(&window), XConnection::NetWmState,
        { quint32(level == Level::Raised), manager.atom(XConnection::NetWmStateAbove), 0,
            XConnection::FromApplication });
    flush();
}

void XOwnWindows::setLevel(QWindow &window, Level level)
{
    Own &own = ownOf(window);
    own.level = level;
    if (window.isVisible()) {
        tellLevel(window, level);
    } else if (own.isStanding && window.handle() != nullptr) {
        writeStates(window, own);
    }
}

// Qt's own request is not used where there is a window manager: it would carry the time of
// the last event that came to us, and window managers take a request with an old time for an
// attempt to steal the keyboard.
void XOwnWindows::activate(QWindow &window, const ActivationStamp &stamp)
{
    if (!window.isVisible()) {
        ownOf(window).stamp = stamp;
        return;
    }
    if (!stamp.startupId.isEmpty()) {
        takeStartupId(window, stamp.startupId);
    }
    if (!_windows.isActiveNamed()) {
        OwnWindows::activate(window, stamp);
        return;
    }
    window.raise();
    _coming = &window;
    const quint32 time = stamp.time != 0 ? stamp.time : timeIn(stamp.startupId);
    if (time != 0) {
        nameActive(window, time);
    } else {
        _waiting = &window;
        flush();
        _windows.connection().askTime();
    }
}

void XOwnWindows::takeStartupId(QWindow &window, const QString &startupId)
{
    const XConnection &names = _windows.connection();
    const QByteArray text = startupId.toUtf8();
    xcb_change_property(_connection, XCB_PROP_MODE_REPLACE, idOf(&window),
        names.atom(XConnection::NetStartupId), names.atom(XConnection::Utf8String), 8,
        quint32(text.size()), text.constData());
    ownOf(window).hasStartupId = true;
    flush();
    endStartup(startupId);
}

void XOwnWindows::nameActive(QWindow &window, quint32 time)
{
    _waiting = nullptr;
    _windows.connection().tellManagerOver(_connection, idOf(&window), XConnection::NetActiveWindow,
        { XConnection::FromPager, time, XCB_WINDOW_NONE });
    flush();
}

void XOwnWindows::takeTime(quint32 time)
{
    if (_waiting && _waiting->isVisible()) {
        nameActive(*_waiting, time);
    }
}

QWindow *XOwnWindows::activeWindow() const
{
    if (!_windows.isActiveNamed()) {
        return OwnWindows::activeWindow();
    }
    const xcb_window_t named = _windows.activeWindow();
    // For a moment none is; what was in front before counts until it has lasted.
    QWindow *const window = windowOf(named != XCB_WINDOW_NONE ? named : _active);
    return window != nullptr && window->isVisible() ? window : nullptr;
}

// Between two windows none is named for a moment; longer than that means that none was in front.
void XOwnWindows::rememberFormer(xcb_window_t named)
{
    if (named == XCB_WINDOW_NONE) {
        if (!_namedNone.isValid()) {
            _namedNone.start();
        }
        return;
    }
    const bool wasNone =
        _namedNone.isValid() && _namedNone.hasExpired(NoneActive::LongestMoment.count());
    _namedNone.invalidate();
    if (windowOf(named) == nullptr) {
        _former = named;
    } else if (wasNone) {
        _former = XCB_WINDOW_NONE;
    }
}

// Over Qt's connection, so that the window manager hears of it before our window goes and does not
// choose one itself.
OwnWindows::Former XOwnWindows::giveFrontBack()
{
    if (!_windows.isActiveNamed()) {
        return OwnWindows::giveFrontBack();
    }
    _waiting = nullptr;
    const bool isThere = _former != XCB_WINDOW_NONE && activeWindow() != nullptr
        && WindowPlace::isOnPresentDesktop(_windows.connection(), _former);
    if (!isThere) {
        return Former::NotThere;
    }
    _windows.connection().tellManagerOver(_connection, _former, XConnection::NetActiveWindow,
        { XConnection::FromPager, XCB_CURRENT_TIME, XCB_WINDOW_NONE });
    flush();
    return Former::InFront;
}

bool XOwnWindows::hasKeyboard(const QWindow &window) const
{
    return WindowPlace::hasKeyboard(_windows.connection(), idOf(&window));
}

bool XOwnWindows::isPointerPressed() const
{
    return WindowPlace::isPointerPressed(_windows.connection());
}

void XOwnWindows::takeNamed(xcb_window_t window)
{
    rememberFormer(window);
    if (!_windows.isActiveNamed()) {
        setActive(OwnWindows::activeWindow());
        return;
    }
    QWindow *const own = windowOf(window);
    const bool isGoing = own != nullptr && !own->isVisible();
    if (window != XCB_WINDOW_NONE && !isGoing) {
        setActive(own);
    } else if (_active != XCB_WINDOW_NONE) {
        _noneActive.begin();
    }
}

// Stands in where no window manager names the active window, and where one forgets to say that it
// has gone.
void XOwnWindows::takeToolkit()
{
    takeNamed(_windows.activeWindow());
}

void XOwnWindows::setActive(QWindow *window)
{
    _noneActive.stop();
    const xcb_window_t active = idOf(window);
    if (active != _active) {
        _active = active;
        // KWin may focus a window that it has put below the one in front, without raising it.
        if (window != nullptr && window == _coming) {
            window->raise();
            flush();
        }
        _coming = nullptr;
        Q_EMIT activeWindowChanged();
    }
}

// Asked anew, since the answer decides what is asked next.
bool XOwnWindows::isComposited() const
{
    const xcb_atom_t manager = _windows.connection().atom(XConnection::CompositingManager);
    const XReply<xcb_get_selection_owner_reply_t> reply(xcb_get_selection_owner_reply(
        _connection, xcb_get_selection_owner(_connection, manager), nullptr));
    return reply && reply->owner != XCB_WINDOW_NONE;
}

// Of the root window, in pixels: what the window covers before and after it gets the frame.
QRect XOwnWindows::areaOfChange(const QWindow &window, const QRect &frame) const
{
    const xcb_window_t root = _windows.connection().root();
    const XReply<xcb_translate_coordinates_reply_t> corner(xcb_translate_coordinates_reply(
        _connection, xcb_translate_coordinates(_connection, idOf(&window), root, 0, 0), nullptr));
    if (!corner) {
        return {};
    }
    const qreal ratio = window.devicePixelRatio();
    const QPoint topLeft(corner->dst_x, corner->dst_y);
    const QRect before(topLeft, (QSizeF(window.size()) * ratio).toSize());
    const QPoint way = (QPointF(frame.topLeft() - window.position()) * ratio).toPoint();
    return before | QRect(topLeft + way, (QSizeF(frame.size()) * ratio).toSize());
}

bool XOwnWindows::setNextContent(QWindow &window, const QImage &picture, const QRect &frame)
{
    if (window.handle() == nullptr) {
        return false;
    }
    if (window.isVisible() && window.size() != frame.size()) {
        _change.begin(idOf(&window), areaOfChange(window, frame), isComposited());
    }
    return XBackground::set(_connection, idOf(&window), picture);
}

void XOwnWindows::clearNextContent(QWindow &window)
{
    _change.end();
    if (window.handle() != nullptr) {
        XBackground::clear(_connection, idOf(&window));
    }
}

void XOwnWindows::flush()
{
    xcb_flush(_connection);
}
