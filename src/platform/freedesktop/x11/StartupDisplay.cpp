#include "platform/freedesktop/x11/StartupDisplay.h"

#include "platform/freedesktop/x11/XClock.h"
#include "platform/freedesktop/x11/XConnection.h"
#include "platform/freedesktop/x11/XMessage.h"

#include <QDeadlineTimer>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <future>
#include <memory>
#include <poll.h>
#include <thread>
#include <xcb/xcbext.h>

namespace {

constexpr int longestAnswer = 1000; // milliseconds

struct Disconnect
{
    void operator()(xcb_connection_t *connection) const { xcb_disconnect(connection); }
};

struct Opened
{
    std::unique_ptr<xcb_connection_t, Disconnect> connection;
    int screen = 0;
};

// The library waits for the server without a limit, and cannot be told to stop. So it does that on
// a thread of its own, which ends, and the connection with it, when the server answers after all.
Opened openWithin(std::chrono::milliseconds limit)
{
    std::packaged_task<Opened()> open([name = qgetenv("DISPLAY")] {
        Opened display;
        display.connection.reset(xcb_connect(name.constData(), &display.screen));
        return display;
    });
    std::future<Opened> opened = open.get_future();
    std::thread(std::move(open)).detach();
    return opened.wait_for(limit) == std::future_status::ready ? opened.get() : Opened();
}

} // namespace

StartupDisplay::StartupDisplay()
{
    if (qEnvironmentVariableIsEmpty("DISPLAY")) {
        return;
    }
    Opened opened = openWithin(std::chrono::milliseconds(longestAnswer));
    if (!opened.connection || xcb_connection_has_error(opened.connection.get()) != 0) {
        return;
    }
    _connection = opened.connection.release();
    _screen = opened.screen;
    _root = XConnection::rootOf(_connection, _screen);
    _window = XClock::make(_connection, _root);
}

StartupDisplay::~StartupDisplay()
{
    if (_connection != nullptr) {
        xcb_disconnect(_connection);
    }
}

template <typename Look> bool StartupDisplay::waitUntil(Look isThere)
{
    const QDeadlineTimer limit(longestAnswer);
    xcb_flush(_connection);
    while (!isThere()) {
        pollfd incoming = { xcb_get_file_descriptor(_connection), POLLIN, 0 };
        if (xcb_connection_has_error(_connection) != 0 || limit.hasExpired()
            || (::poll(&incoming, 1, int(limit.remainingTime())) < 0 && errno != EINTR)) {
            return false;
        }
    }
    return true;
}

std::optional<quint32> StartupDisplay::time()
{
    quint32 time = 0;
    if (_connection == nullptr) {
        return {};
    }
    XClock::ask(_connection, _window);
    if (!waitUntil([&] { return takeTime(&time); })) {
        return {};
    }
    return time;
}

bool StartupDisplay::takeTime(quint32 *time)
{
    while (const XReply<xcb_generic_event_t> event { xcb_poll_for_event(_connection) }) {
        if (const std::optional<quint32> told = XClock::timeIn(event.get(), _window)) {
            *time = *told;
            return true;
        }
    }
    return false;
}

xcb_atom_t StartupDisplay::atom(const QByteArray &name)
{
    const xcb_intern_atom_cookie_t question =
        xcb_intern_atom(_connection, 0, quint16(name.size()), name.constData());
    XReply<xcb_intern_atom_reply_t> answer;
    const bool isAnswered = waitUntil([&] {
        void *reply = nullptr;
        xcb_generic_error_t *error = nullptr;
        const int isDone = xcb_poll_for_reply(_connection, question.sequence, &reply, &error);
        answer.reset(static_cast<xcb_intern_atom_reply_t *>(reply));
        const XReply<xcb_generic_error_t> freed(error);
        return isDone != 0;
    });
    return isAnswered && answer ? answer->atom : xcb_atom_t(XCB_ATOM_NONE);
}

void StartupDisplay::broadcast(const QByteArray &kind, const Values &values)
{
    if (_connection == nullptr) {
        return;
    }
    QByteArray message = kind + ':';
    for (const auto &[key, value] : values) {
        if (!value.isEmpty()) {
            QByteArray quoted = value;
            quoted.replace('\\', "\\\\").replace('"', "\\\"");
            message += ' ' + key + "=\"" + quoted + '"';
        }
    }
    send(message);
}

// In parts of the size that one event has room for.
void StartupDisplay::send(const QByteArray &message)
{
    xcb_client_message_event_t part =
        XMessage::make(_window, atom(QByteArrayLiteral("_NET_STARTUP_INFO_BEGIN")));
    part.format = 8;
    const xcb_atom_t next = atom(QByteArrayLiteral("_NET_STARTUP_INFO"));
    if (part.type == XCB_ATOM_NONE || next == XCB_ATOM_NONE) {
        return;
    }
    // The zero that ends the text is part of the message.
    const qsizetype size = message.size() + 1;
    for (qsizetype sent = 0; sent < size; sent += qsizetype(sizeof(part.data.data8))) {
        const size_t count = qMin(sizeof(part.data.data8), size_t(size - sent));
        std::memset(part.data.data8, 0, sizeof(part.data.data8));
        std::memcpy(part.data.data8, message.constData() + sent, count);
        XMessage::send(_connection, _root, XCB_EVENT_MASK_PROPERTY_CHANGE, part);
        part.type = next;
    }
    // The server drops what it has not read when it sees us go; its answer says that it has.
    static_cast<void>(time());
}
