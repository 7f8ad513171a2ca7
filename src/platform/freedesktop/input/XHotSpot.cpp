#include "platform/freedesktop/input/XHotSpot.h"

#include "platform/freedesktop/x11/XAtoms.h"
#include "platform/freedesktop/x11/XMessage.h"

#include <QGuiApplication>
#include <QScreen>

#include <algorithm>
#include <cmath>
#include <iterator>

using namespace std::chrono_literals;

namespace {

constexpr auto shortestPause = 250ms;
constexpr std::chrono::milliseconds longestPause = 8s;
// https://www.freedesktop.org/wiki/Specifications/XDND/
constexpr quint32 dragProtocol = 5;
constexpr quint32 hasMoreTypes = 1;
constexpr quint32 mostTypes = 1000;
constexpr std::string_view title = "Ortu Hot Spot";

const QScreen *screenOf(const QRect &area)
{
    const QList<QScreen *> screens = QGuiApplication::screens();
    const auto found = std::find_if(screens.begin(), screens.end(),
        [&area](const QScreen *screen) { return screen->geometry().contains(area.center()); });
    return found == screens.end() ? nullptr : *found;
}

bool isThereADisplay()
{
    return QGuiApplication::platformName() == QLatin1String("xcb")
        && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}

} // namespace

XHotSpot::XHotSpot(QObject *parent)
    : HotSpot(parent)
    , _nextPause(shortestPause)
{
    _pause.setSingleShot(true);
    connect(&_pause, &QTimer::timeout, this, [this] {
        if (_isCheckDue) {
            check();
        } else {
            _nextPause = shortestPause;
        }
    });
}

XHotSpot::~XHotSpot()
{
    // No signal comes from a destructor.
    blockSignals(true);
    remove();
}

QRect XHotSpot::devicePixels(const QRect &area, const QRect &screen, qreal devicePixelRatio)
{
    const auto scaled = [devicePixelRatio](
                            int offset) { return qRound(offset * devicePixelRatio); };
    const QPoint offset = area.topLeft() - screen.topLeft();
    int right = scaled(offset.x() + area.width());
    int bottom = scaled(offset.y() + area.height());
    const int lost = int(std::ceil((devicePixelRatio - 1) / 2));
    if (area.right() >= screen.right()) {
        right += lost;
    }
    if (area.bottom() >= screen.bottom()) {
        bottom += lost;
    }
    const QPoint corner(scaled(offset.x()), scaled(offset.y()));
    return { screen.topLeft() + corner, QSize(right - corner.x(), bottom - corner.y()) };
}

bool XHotSpot::place(const QRect &area)
{
    remove();
    const QScreen *const screen = area.isEmpty() || !isThereADisplay() ? nullptr : screenOf(area);
    if (!screen || !connectToServer()) {
        return false;
    }
    _pixels = devicePixels(area, screen->geometry(), screen->devicePixelRatio());
    makeWindow();
    const std::optional<bool> isInside = isPointerInside();
    if (!isInside) {
        remove();
        return false;
    }
    _pointer = *isInside ? Pointer::Resting : Pointer::Outside;
    return true;
}

void XHotSpot::remove()
{
    if (_window == XCB_WINDOW_NONE) {
        return;
    }
    if (_connection->isOpen()) {
        const quint32 nothing = 0;
        xcb_change_window_attributes(
            _connection->get(), _connection->root(), XCB_CW_EVENT_MASK, &nothing);
        xcb_destroy_window(_connection->get(), _window);
        xcb_flush(_connection->get());
    }
    _window = XCB_WINDOW_NONE;
    _isCheckDue = false;
    _pause.stop();
    _nextPause = shortestPause;
    leave();
}

bool XHotSpot::connectToServer()
{
    if (!_connection) {
        _connection = std::make_unique<XConnection>();
        if (!_connection->isOpen()) {
            return false;
        }
        // In the order of the enumeration.
        _atoms = atomsNamed(_connection->get(),
            std::array<std::string_view, AtomCount> { "XdndAware", "XdndDrop", "XdndEnter",
                "XdndFinished", "XdndLeave", "XdndPosition", "XdndStatus", "XdndTypeList",
                "text/uri-list", "text/x-moz-url", "_NETSCAPE_URL" });
        connect(_connection.get(), &XConnection::eventArrived, this, &XHotSpot::handleEvent);
        connect(_connection.get(), &XConnection::eventsTaken, this, [this] {
            if (_isCheckDue && !_pause.isActive()) {
                check();
            }
        });
        connect(_connection.get(), &XConnection::closed, this, &XHotSpot::remove);
    }
    return _connection->isOpen();
}

void XHotSpot::makeWindow()
{
    xcb_connection_t *const server = _connection->get();
    // Of every window, since the server does not say when one that is not drawn is covered.
    const quint32 restacking = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    xcb_change_window_attributes(server, _connection->root(), XCB_CW_EVENT_MASK, &restacking);
    _window = xcb_generate_id(server);
    // In the order of the mask's bits.
    const std::array<quint32, 2> values { 1,
        XCB_EVENT_MASK_ENTER_WINDOW | XCB_EVENT_MASK_LEAVE_WINDOW };
    xcb_create_window(server, 0, _window, _connection->root(), qint16(_pixels.x()),
        qint16(_pixels.y()), quint16(_pixels.width()), quint16(_pixels.height()), 0,
        XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT,
        XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values.data());
    xcb_change_property(
        server, XCB_PROP_MODE_REPLACE, _window, _atoms[Aware], XCB_ATOM_ATOM, 32, 1, &dragProtocol);
    xcb_change_property(server, XCB_PROP_MODE_REPLACE, _window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING,
        8, quint32(title.size()), title.data());
    xcb_map_window(server, _window);
}

void XHotSpot::handleEvent(const xcb_generic_event_t *event)
{
    if (_window == XCB_WINDOW_NONE) {
        return;
    }
    const int type = event->response_type & 0x7f;
    if (type == XCB_ENTER_NOTIFY || type == XCB_LEAVE_NOTIFY) {
        handleCrossing(
            *reinterpret_cast<const xcb_enter_notify_event_t *>(event), type == XCB_ENTER_NOTIFY);
    } else if (type == XCB_CLIENT_MESSAGE) {
        handleDrag(*reinterpret_cast<const xcb_client_message_event_t *>(event));
    } else if (concernsCovering(event)) {
        _isCheckDue = true;
    }
}

void XHotSpot::handleCrossing(const xcb_enter_notify_event_t &event, bool isEntering)
{
    if (event.event != _window) {
        return;
    }
    if (!isEntering && event.mode == XCB_NOTIFY_MODE_GRAB) {
        leave();
    } else if (!isEntering && _pixels.contains(event.root_x, event.root_y)) {
        // Something has come between the pointer and the spot.
        _isCheckDue = true;
    } else if (!isEntering) {
        leave();
    } else if (_pointer == Pointer::Outside && event.mode == XCB_NOTIFY_MODE_NORMAL) {
        enter(event.time);
    } else if (_pointer == Pointer::Outside) {
        _pointer = Pointer::Resting;
    }
}

void XHotSpot::handleDrag(const xcb_client_message_event_t &message)
{
    if (message.window != _window || message.format != 32) {
        return;
    }
    const xcb_window_t source = message.data.data32[0];
    if (message.type == _atoms[Enter]) {
        // The one before may have ended without a word.
        leave();
        _dragSource = carriesUrls(message) ? source : xcb_window_t(XCB_WINDOW_NONE);
    } else if (message.type == _atoms[Position]) {
        refuse(source, Status);
        if (_pointer != Pointer::Entered && _dragSource == source) {
            enter(message.data.data32[3]);
        }
    } else if (message.type == _atoms[Leave] || message.type == _atoms[Drop]) {
        if (message.type == _atoms[Drop]) {
            refuse(source, Finished);
        }
        leave();
    }
}

// The message names three types, a property of the source all of them if there are more.
bool XHotSpot::carriesUrls(const xcb_client_message_event_t &enter) const
{
    const auto &words = enter.data.data32;
    QList<quint32> types(words + 2, words + 5);
    if ((words[1] & hasMoreTypes) != 0) {
        xcb_connection_t *const server = _connection->get();
        types += numbersIn(XPropertyReply(xcb_get_property_reply(server,
            xcb_get_property(server, 0, words[0], _atoms[TypeList], XCB_ATOM_ATOM, 0, mostTypes),
            nullptr)));
    }
    return std::any_of(types.begin(), types.end(), [this](quint32 type) {
        return type != XCB_ATOM_NONE
            && std::find(_atoms.begin() + UriList, _atoms.end(), type) != _atoms.end();
    });
}

void XHotSpot::refuse(xcb_window_t source, Atom message)
{
    XMessage::send(_connection->get(), source, XCB_EVENT_MASK_NO_EVENT,
        XMessage::make(source, _atoms[message], { _window }));
    xcb_flush(_connection->get());
}

bool XHotSpot::concernsCovering(const xcb_generic_event_t *event) const
{
    switch (event->response_type & 0x7f) {
    case XCB_MAP_NOTIFY:
        return reinterpret_cast<const xcb_map_notify_event_t *>(event)->window != _window;
    case XCB_CONFIGURE_NOTIFY: {
        const auto *const change = reinterpret_cast<const xcb_configure_notify_event_t *>(event);
        return change->window != _window
            && overlaps(change->x, change->y, change->width + 2 * change->border_width,
                change->height + 2 * change->border_width);
    }
    case XCB_CIRCULATE_NOTIFY:
        return true;
    case XCB_REPARENT_NOTIFY:
        return reinterpret_cast<const xcb_reparent_notify_event_t *>(event)->parent
            == _connection->root();
    default:
        return false;
    }
}

bool XHotSpot::overlaps(int x, int y, int width, int height) const
{
    return QRect(x, y, width, height).intersects(_pixels);
}

void XHotSpot::check()
{
    _isCheckDue = false;
    const bool wasCovered = isCovered();
    if (wasCovered) {
        const quint32 above = XCB_STACK_MODE_ABOVE;
        xcb_configure_window(_connection->get(), _window, XCB_CONFIG_WINDOW_STACK_MODE, &above);
        xcb_flush(_connection->get());
    }
    _pause.start(_nextPause);
    _nextPause = wasCovered ? std::min(2 * _nextPause, longestPause) : shortestPause;
    if (_pointer != Pointer::Outside && isPointerInside() == false) {
        // It has gone while something lay above.
        leave();
    }
}

bool XHotSpot::isCovered() const
{
    xcb_connection_t *const server = _connection->get();
    const XReply<xcb_query_tree_reply_t> tree(
        xcb_query_tree_reply(server, xcb_query_tree(server, _connection->root()), nullptr));
    if (!tree) {
        return false;
    }
    const xcb_window_t *const first = xcb_query_tree_children(tree.get());
    const xcb_window_t *const last = first + xcb_query_tree_children_length(tree.get());
    const xcb_window_t *const own = std::find(first, last, _window);
    if (own == last) {
        return false;
    }
    struct Asked
    {
        xcb_get_window_attributes_cookie_t attributes;
        xcb_get_geometry_cookie_t geometry;
    };
    QList<Asked> above;
    std::transform(own + 1, last, std::back_inserter(above), [server](xcb_window_t window) {
        return Asked { xcb_get_window_attributes(server, window),
            xcb_get_geometry(server, window) };
    });
    bool isCovered = false;
    for (const Asked &asked : std::as_const(above)) {
        const XReply<xcb_get_window_attributes_reply_t> attributes(
            xcb_get_window_attributes_reply(server, asked.attributes, nullptr));
        const XReply<xcb_get_geometry_reply_t> place(
            xcb_get_geometry_reply(server, asked.geometry, nullptr));
        isCovered = isCovered
            || (attributes && place && attributes->map_state == XCB_MAP_STATE_VIEWABLE
                && overlaps(place->x, place->y, place->width + 2 * place->border_width,
                    place->height + 2 * place->border_width));
    }
    return isCovered;
}

std::optional<bool> XHotSpot::isPointerInside() const
{
    xcb_connection_t *const server = _connection->get();
    const XReply<xcb_query_pointer_reply_t> pointer(
        xcb_query_pointer_reply(server, xcb_query_pointer(server, _window), nullptr));
    if (!pointer) {
        return std::nullopt;
    }
    return pointer->same_screen != 0 && _pixels.contains(pointer->root_x, pointer->root_y);
}

void XHotSpot::enter(quint32 time)
{
    _pointer = Pointer::Entered;
    Q_EMIT entered({ time, {} });
}

void XHotSpot::leave()
{
    const bool hadEntered = _pointer == Pointer::Entered;
    _pointer = Pointer::Outside;
    _dragSource = XCB_WINDOW_NONE;
    if (hadEntered) {
        Q_EMIT left();
    }
}
