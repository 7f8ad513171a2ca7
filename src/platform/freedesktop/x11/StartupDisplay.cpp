#include "platform/freedesktop/x11/StartupDisplay.h"

#include <QDeadlineTimer>

#include <array>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <future>
#include <memory>
#include <poll.h>
#include <thread>
#include <xcb/xcbext.h>

namespace {

constexpr int longestAnswer = 1000; // milliseconds

struct FreeAnswer
{
    void operator()(void *answer) const { std::free(answer); }
};
template <typename T> using Answer = std::unique_ptr<T, FreeAnswer>;

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
    xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(_connection));
    for (int before = _screen; before > 0 && screens.rem > 1; --before) {
        xcb_screen_next(&screens);
    }
    _root = screens.data->root;
    _window = xcb_generate_id(_connection);
    // In the order of the mask's bits.
    const std::array<quint32, 2> values { 1, XCB_EVENT_MASK_PROPERTY_CHANGE };
    xcb_create_window(_connection, XCB_COPY_FROM_PARENT, _window, _root, -1, -1, 1, 1, 0,
        XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT,
        XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values.data());
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
    // The server reports every change of a property with its time, even one that adds nothing.
    xcb_change_property(_connection, XCB_PROP_MODE_APPEND, _window, XCB_ATOM_WM_NAME,
        XCB_ATOM_STRING, 8, 0, nullptr);
    if (!waitUntil([&] { return takeTime(&time); })) {
        return {};
    }
    return time;
}

bool StartupDisplay::takeTime(quint32 *time)
{
    while (const Answer<xcb_generic_event_t> event { xcb_poll_for_event(_connection) }) {
        if ((event->response_type & 0x7f) == XCB_PROPERTY_NOTIFY) {
            *time = reinterpret_cast<const xcb_property_notify_event_t *>(event.get())->time;
            return true;
        }
    }
    return false;
}

xcb_atom_t StartupDisplay::atom(const QByteArray &name)
{
    const xcb_intern_atom_cookie_t question =
        xcb_intern_atom(_connection, 0, quint16(name.size()), name.constData());
    Answer<xcb_intern_atom_reply_t> answer;
    const bool isAnswered = waitUntil([&] {
        void *reply = nullptr;
        xcb_generic_error_t *error = nullptr;
        const int isDone = xcb_poll_for_reply(_connection, question.sequence, &reply, &error);
        answer.reset(static_cast<xcb_intern_atom_reply_t *>(reply));
        std::free(error);
        return isDone != 0;
    });
    return isAnswered && answer ? answer->atom : xcb_atom_t(XCB_ATOM_NONE);
}

void StartupDisplay::broadcast(const QByteArray &message)
{
    if (_connection == nullptr) {
        return;
    }
    xcb_client_message_event_t part = {};
    part.response_type = XCB_CLIENT_MESSAGE;
    part.format = 8;
    part.window = _window;
    part.type = atom(QByteArrayLiteral("_NET_STARTUP_INFO_BEGIN"));
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
        std::array<char, sizeof(part)> bytes {};
        std::memcpy(bytes.data(), &part, sizeof(part));
        xcb_send_event(_connection, 0, _root, XCB_EVENT_MASK_PROPERTY_CHANGE, bytes.data());
        part.type = next;
    }
    // The server drops what it has not read when it sees us go; its answer says that it has.
    static_cast<void>(time());
}
