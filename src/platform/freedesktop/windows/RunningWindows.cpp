#include "platform/freedesktop/windows/RunningWindows.h"

#include "platform/freedesktop/base/Log.h"
#include "platform/freedesktop/entries/LaunchedEntries.h"

#include <algorithm>
#include <chrono>
#include <unistd.h>
#include <utility>

using namespace std::chrono_literals;

namespace {

// In units of four bytes; more windows than a user opens.
constexpr quint32 longestList = 1 << 16;
// What a program may take to answer that it has been shown.
constexpr auto longestShowing = 1s;
// What it may take to ask the user about what is not saved.
constexpr auto longestQuitting = 10s;

// Empty when there is no such property.
std::optional<QList<xcb_window_t>> windowsIn(
    const XConnection &connection, XConnection::Atom property)
{
    const XPropertyReply reply(xcb_get_property_reply(connection.get(),
        xcb_get_property(connection.get(), 0, connection.root(), connection.atom(property),
            XCB_ATOM_WINDOW, 0, longestList),
        nullptr));
    if (!reply || reply->type != XCB_ATOM_WINDOW || reply->format != 32) {
        return std::nullopt;
    }
    return numbersIn(reply);
}

// Those that are there and shown.
QList<xcb_window_t> mappedOf(const XConnection &connection, const QList<xcb_window_t> &windows)
{
    QList<xcb_get_window_attributes_cookie_t> asked;
    for (const xcb_window_t window : windows) {
        asked.append(xcb_get_window_attributes(connection.get(), window));
    }
    QList<xcb_window_t> mapped;
    for (qsizetype i = 0; i < windows.size(); ++i) {
        const XReply<xcb_get_window_attributes_reply_t> reply(
            xcb_get_window_attributes_reply(connection.get(), asked[i], nullptr));
        if (reply && reply->map_state != XCB_MAP_STATE_UNMAPPED) {
            mapped.append(windows[i]);
        }
    }
    return mapped;
}

void selectEvents(const XConnection &connection, xcb_window_t window, quint32 mask)
{
    xcb_change_window_attributes(connection.get(), window, XCB_CW_EVENT_MASK, &mask);
}

bool haveSameName(const WindowTraits &one, const WindowTraits &other)
{
    return one.className == other.className && one.instanceName == other.instanceName
        && one.gtkApplicationId == other.gtkApplicationId
        && one.kdeDesktopFile == other.kdeDesktopFile && one.processId == other.processId
        && one.startupId == other.startupId && one.transientFor == other.transientFor;
}

} // namespace

RunningWindows::RunningWindows(XConnection &connection, DesktopEntryIndex &entries,
    const QStringList &dataFolders, const QStringList &desktops)
    : _connection(connection)
    , _matcher(entries, dataFolders, desktops)
{
    _handingBack.setSingleShot(true);
    _handingBack.setInterval(longestShowing);
    connect(&_handingBack, &QTimer::timeout, this, [this] { _shown.clear(); });
    connect(&_noneActive, &NoneActive::timeout, this, [this] { setActive(XCB_WINDOW_NONE); });
    if (!_connection.isOpen()) {
        if (const QByteArray display = qgetenv("DISPLAY"); !display.isEmpty()) {
            qCWarning(lcPlatform, "display %s cannot be reached, so nothing seems to run",
                display.constData());
        }
        return;
    }
    _matcher.refresh();
    _ownApplication = _matcher.pathOfId(QStringLiteral("org.ortu.Ortu"));
    connect(&_connection, &XConnection::eventArrived, this, &RunningWindows::handleEvent);
    connect(&_connection, &XConnection::eventsTaken, this, &RunningWindows::refresh);
    connect(&_connection, &XConnection::closed, this, &RunningWindows::forgetAll);
    selectEvents(_connection, _connection.root(), XCB_EVENT_MASK_PROPERTY_CHANGE);
    if (!windowsIn(_connection, XConnection::NetClientList)) {
        qCWarning(lcPlatform,
            "no window manager lists the windows of this display, so nothing seems to run");
    }
    refresh();
}

void RunningWindows::handleEvent(const xcb_generic_event_t *event)
{
    const int type = event->response_type & 0x7f;
    if (type == XCB_DESTROY_NOTIFY) {
        // The number of the window may be given to another one at once.
        _known.remove(reinterpret_cast<const xcb_destroy_notify_event_t *>(event)->window);
        _isListDue = true;
    }
    if (type == XCB_CLIENT_MESSAGE) {
        takeStartupMessage(*reinterpret_cast<const xcb_client_message_event_t *>(event));
    }
    if (type != XCB_PROPERTY_NOTIFY) {
        return;
    }
    const auto *const change = reinterpret_cast<const xcb_property_notify_event_t *>(event);
    if (change->window != _connection.root()) {
        if (WindowTraitsReader::isRead(_connection, change->atom)) {
            _changed.insert(change->window);
        }
        return;
    }
    _isListDue = _isListDue || change->atom == _connection.atom(XConnection::NetClientList);
    _isActiveDue = _isActiveDue || change->atom == _connection.atom(XConnection::NetActiveWindow);
}

void RunningWindows::takeStartupMessage(const xcb_client_message_event_t &event)
{
    const bool isFirst = event.type == _connection.atom(XConnection::NetStartupInfoBegin);
    if (!isFirst && event.type != _connection.atom(XConnection::NetStartupInfo)) {
        return;
    }
    const QByteArray message = _startupMessages.take(
        event, isFirst ? StartupMessages::Part::First : StartupMessages::Part::Next);
    const QByteArray id = StartupMessages::endedStart(message);
    if (const QString path = LaunchedEntries::entryOf(QString::fromUtf8(id)); !path.isEmpty()) {
        _started.insert(path);
    }
}

void RunningWindows::announceStarts()
{
    for (const QString &path : std::exchange(_started, {})) {
        if (!path.isEmpty()) {
            Q_EMIT startEnded(path);
        }
    }
}

void RunningWindows::refresh()
{
    if (!_isListDue && !_isActiveDue && _changed.isEmpty()) {
        announceStarts();
        return;
    }
    takeList();
    const QStringList before = _launched;
    const bool areLaunched = takeLaunched();
    const bool areTerminated = std::any_of(before.begin(), before.end(),
        [this](const QString &path) { return !_launched.contains(path); });
    setRaised();
    if (areLaunched) {
        Q_EMIT launched();
    }
    if (areTerminated) {
        Q_EMIT terminated();
    }
    announceStarts();
    takeActive();
}

// Reads what is new or has changed.
void RunningWindows::takeList()
{
    QList<xcb_window_t> toRead;
    if (std::exchange(_isListDue, false)) {
        _list = readList();
        const QSet<xcb_window_t> listed(_list.begin(), _list.end());
        _known.removeIf([&listed](const auto &known) { return !listed.contains(known.key()); });
        for (const xcb_window_t window : std::as_const(_list)) {
            if (!_known.contains(window)) {
                // Before anything is read, so that no change is missed.
                selectEvents(_connection, window,
                    XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY);
                toRead.append(window);
            }
        }
    }
    const QList<xcb_window_t> newWindows = toRead;
    for (const xcb_window_t window : std::exchange(_changed, {})) {
        if (_known.contains(window)) {
            toRead.append(window);
        }
    }
    readWindows(toRead);
    for (const xcb_window_t window : newWindows) {
        const Known known = _known.value(window);
        if (known.traits.isOrdinary) {
            _started += { known.application, known.launchedEntry };
        }
    }
    takeQuestions(newWindows);
}

void RunningWindows::expectQuestion(const QString &bundlePath)
{
    _expected.insert(bundlePath, QDeadlineTimer(longestQuitting));
}

void RunningWindows::takeQuestions(const QList<xcb_window_t> &newWindows)
{
    _expected.removeIf([](const auto &expected) { return expected.value().hasExpired(); });
    if (_expected.isEmpty() || _known.value(_namedWindow).traits.processId != ::getpid()) {
        return;
    }
    for (const xcb_window_t window : newWindows) {
        if (_expected.contains(_known.value(window).application)) {
            activate(window);
            Q_EMIT questionAsked();
            return;
        }
    }
}

// A window manager that ends takes its windows off the list, or the whole list away, but leaves the
// windows on the screen: those are kept until the next one lists them.
QList<xcb_window_t> RunningWindows::readList() const
{
    const QList<xcb_window_t> list =
        windowsIn(_connection, XConnection::NetClientList).value_or(QList<xcb_window_t>());
    const QSet<xcb_window_t> listed(list.begin(), list.end());
    QList<xcb_window_t> missing = _list;
    missing.removeIf(
        [&](xcb_window_t window) { return listed.contains(window) || !_known.contains(window); });
    return mappedOf(_connection, missing) + list;
}

void RunningWindows::readWindows(const QList<xcb_window_t> &windows)
{
    if (windows.isEmpty()) {
        return;
    }
    QList<xcb_window_t> toMatch;
    for (const WindowTraits &traits : WindowTraitsReader::read(_connection, windows)) {
        const auto known = _known.find(traits.window);
        if (known != _known.end() && haveSameName(known->traits, traits)) {
            known->traits = traits;
            continue;
        }
        _known[traits.window].traits = traits;
        toMatch.append(traits.window);
    }
    match(toMatch);
}

void RunningWindows::forgetAll()
{
    _list.clear();
    _known.clear();
    _launched.clear();
    _serialNumbers.clear();
    setRaised();
    setActive(XCB_WINDOW_NONE);
    Q_EMIT terminated();
}

// Applications keep their places, also when the window that was their first is closed. True when
// there is a new one.
bool RunningWindows::takeLaunched()
{
    QSet<QString> running;
    QStringList inOrder;
    for (const xcb_window_t window : std::as_const(_list)) {
        const Known known = _known.value(window);
        const bool counts = known.traits.isOrdinary && !known.application.isEmpty()
            && known.application != _ownApplication;
        if (counts && !running.contains(known.application)) {
            running.insert(known.application);
            inOrder.append(known.application);
        }
    }
    _launched.removeIf([&running](const QString &path) { return !running.contains(path); });
    _serialNumbers.removeIf([&running](const auto &it) { return !running.contains(it.key()); });
    bool areLaunched = false;
    for (const QString &path : std::as_const(inOrder)) {
        if (!_serialNumbers.contains(path)) {
            _serialNumbers.insert(path, ++_lastSerialNumber);
            _launched.append(path);
            areLaunched = true;
        }
    }
    return areLaunched;
}

// A window that is not known, or none, counts only once it has lasted.
void RunningWindows::takeActive()
{
    const bool isDue = std::exchange(_isActiveDue, false);
    if (isDue) {
        const std::optional<QList<xcb_window_t>> named =
            windowsIn(_connection, XConnection::NetActiveWindow);
        _isActiveNamed = named.has_value();
        _namedWindow = named.value_or(QList<xcb_window_t>()).value(0, XCB_WINDOW_NONE);
        Q_EMIT activeWindowNamed(_namedWindow);
    }
    const auto known = _known.find(_namedWindow);
    if (known == _known.end()) {
        if (_activeWindow != XCB_WINDOW_NONE) {
            _noneActive.begin();
        }
        return;
    }
    _noneActive.stop();
    if (isDue || _namedWindow != _activeWindow) {
        known->lastUse = ++_switches;
        setRaised();
    }
    // Its application may have become known only now.
    setActive(_namedWindow);
    if (_shown.remove(_namedWindow)) {
        activate(_frontBefore);
    }
}

void RunningWindows::setActive(xcb_window_t window)
{
    _activeWindow = window;
    const QString application = _known.value(window).application;
    if (application != _activeApplication) {
        _activeApplication = application;
        Q_EMIT frontSwitched();
    }
}

void RunningWindows::setRaised()
{
    QHash<QString, xcb_window_t> raised;
    for (const xcb_window_t window : std::as_const(_list)) {
        const Known known = _known.value(window);
        if (known.traits.isOrdinary && !known.application.isEmpty()
            && known.application != _ownApplication) {
            const auto best = raised.constFind(known.application);
            const bool isBetter =
                best == raised.constEnd() || known.lastUse >= _known.value(*best).lastUse;
            if (isBetter) {
                raised.insert(known.application, window);
            }
        }
    }
    const QMutexLocker lock(&_mutex);
    _raised = std::move(raised);
}

QList<WindowTraits> RunningWindows::windowsOf(const QString &bundlePath) const
{
    QList<WindowTraits> windows;
    if (bundlePath.isEmpty() || bundlePath == _ownApplication) {
        return windows;
    }
    for (const xcb_window_t window : _list) {
        const Known known = _known.value(window);
        if (known.traits.isOrdinary && known.application == bundlePath) {
            windows.append(known.traits);
        }
    }
    return windows;
}

quint64 RunningWindows::serialNumberOf(const QString &bundlePath) const
{
    return _serialNumbers.value(bundlePath);
}

bool RunningWindows::raise(const QString &bundlePath)
{
    const QMutexLocker lock(&_mutex);
    const xcb_window_t window = _raised.value(bundlePath, XCB_WINDOW_NONE);
    if (window == XCB_WINDOW_NONE || !_connection.isOpen()) {
        return false;
    }
    activate(window);
    // What is asked for last wins.
    QMetaObject::invokeMethod(
        this, [this] { _shown.clear(); }, Qt::QueuedConnection);
    return true;
}

xcb_window_t RunningWindows::activeWindow() const
{
    if (!_connection.isOpen()) {
        return XCB_WINDOW_NONE;
    }
    return windowsIn(_connection, XConnection::NetActiveWindow)
        .value_or(QList<xcb_window_t>())
        .value(0, XCB_WINDOW_NONE);
}

void RunningWindows::activate(xcb_window_t window)
{
    if (window != XCB_WINDOW_NONE) {
        _connection.tellManager(window, XConnection::NetActiveWindow,
            { XConnection::FromPager, XCB_CURRENT_TIME, XCB_WINDOW_NONE });
    }
}

void RunningWindows::handBack(
    xcb_window_t front, const QSet<xcb_window_t> &shown, const QString &bundlePath)
{
    if (front == XCB_WINDOW_NONE || _known.value(front).application == bundlePath) {
        return;
    }
    // What is in front may have come there by being shown just now.
    if (!_handingBack.isActive() || !_shown.contains(front)) {
        _frontBefore = front;
    }
    _shown += shown;
    _handingBack.start();
}
