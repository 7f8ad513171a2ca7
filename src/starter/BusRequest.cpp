#include "starter/BusRequest.h"

#include "starter/BusMessage.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <time.h>
#include <unistd.h>

using BusRequest::Outcome;

namespace {

constexpr std::string_view service = "org.ortu.Ortu";
constexpr std::string_view servicePath = "/org/ortu/Ortu";
constexpr std::string_view applicationInterface = "org.freedesktop.Application";
constexpr std::string_view bus = "org.freedesktop.DBus";
constexpr std::string_view busPath = "/org/freedesktop/DBus";

// For a bus that is busy, and for the running program. In milliseconds.
constexpr std::int64_t busPatience = 3000;
constexpr std::int64_t programPatience = 5000;
// Of an identifier that a desktop gives to a start.
constexpr std::size_t longestId = 1000;

constexpr std::uint32_t helloSerial = 1;
constexpr std::uint32_t requestSerial = 2;

// In milliseconds, from any point in time. (The clock of C++ would bring its library along.)
std::int64_t now()
{
    timespec time = {};
    ::clock_gettime(CLOCK_MONOTONIC, &time);
    return std::int64_t(time.tv_sec) * 1000 + time.tv_nsec / 1'000'000;
}

std::string_view environment(const char *name)
{
    const char *const value = std::getenv(name);
    return value != nullptr ? value : "";
}

// A bus closes the connection to those who send anything but UTF-8.
bool canBeSent(std::string_view text)
{
    return text.size() <= longestId && std::all_of(text.begin(), text.end(), [](char character) {
        return character >= ' ' && character <= '~';
    });
}

// Of the session bus. False for anything but one plain socket: escapes, lists, other transports.
bool takeAddress(sockaddr_un &address, socklen_t &size)
{
    constexpr std::string_view path = "unix:path=";
    constexpr std::string_view abstract = "unix:abstract=";
    const std::string_view text = environment("DBUS_SESSION_BUS_ADDRESS");
    const bool isAbstract = text.starts_with(abstract);
    if (!isAbstract && !text.starts_with(path)) {
        return false;
    }
    std::string_view name = text.substr(isAbstract ? abstract.size() : path.size());
    name = name.substr(0, name.find(','));
    if (text.find_first_of(";%") != text.npos || name.empty()
        || name.size() + 2 > sizeof address.sun_path) {
        return false;
    }
    address = {};
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path + (isAbstract ? 1 : 0), name.data(), name.size());
    size = socklen_t(offsetof(sockaddr_un, sun_path) + name.size() + 1);
    return true;
}

// One connection to the bus, closed at its end.
class Connection final
{
public:
    Connection() = default;
    ~Connection()
    {
        if (_socket >= 0) {
            ::close(_socket);
        }
    }
    Connection(const Connection &) = delete;
    Connection &operator=(const Connection &) = delete;

    bool open()
    {
        sockaddr_un address;
        socklen_t size = 0;
        if (!takeAddress(address, size)) {
            return false;
        }
        _socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        return _socket >= 0
            && ::connect(_socket, reinterpret_cast<const sockaddr *>(&address), size) == 0;
    }

    bool write(std::string_view bytes) const
    {
        while (!bytes.empty()) {
            const ssize_t count = ::send(_socket, bytes.data(), bytes.size(), MSG_NOSIGNAL);
            if (count < 0 && errno != EINTR) {
                return false;
            }
            bytes.remove_prefix(count < 0 ? 0 : std::size_t(count));
        }
        return true;
    }

    // What has arrived and was not dropped. Waits for more; false where none comes until then.
    bool readMore(std::int64_t deadline)
    {
        const std::int64_t left = deadline - now();
        pollfd waiting { _socket, POLLIN, 0 };
        if (left <= 0 || _size == _bytes.size()) {
            return false;
        }
        const int ready = ::poll(&waiting, 1, int(left));
        if (ready <= 0) {
            return ready < 0 && errno == EINTR;
        }
        const ssize_t count = ::recv(_socket, _bytes.data() + _size, _bytes.size() - _size, 0);
        _size += count > 0 ? std::size_t(count) : 0;
        return count > 0;
    }
    std::string_view arrived() const { return { _bytes.data(), _size }; }
    void drop(std::size_t count)
    {
        std::memmove(_bytes.data(), _bytes.data() + count, _size - count);
        _size -= count;
    }

private:
    int _socket = -1;
    std::array<char, 8192> _bytes;
    std::size_t _size = 0;
};

// Says who we are; the bus asks the kernel whether that is true.
bool authenticate(Connection &connection)
{
    std::array<char, 32> user;
    std::snprintf(user.data(), user.size(), "%u", unsigned(::getuid()));
    std::array<char, 96> line;
    int size = 1 + std::snprintf(line.data() + 1, line.size() - 1, "AUTH EXTERNAL ");
    line[0] = '\0';
    for (const char *digit = user.data(); *digit != '\0'; ++digit) {
        size += std::snprintf(line.data() + size, line.size() - std::size_t(size), "%02x", *digit);
    }
    size += std::snprintf(line.data() + size, line.size() - std::size_t(size), "\r\n");
    if (!connection.write({ line.data(), std::size_t(size) })) {
        return false;
    }
    const auto deadline = now() + busPatience;
    while (connection.arrived().find("\r\n") == std::string_view::npos) {
        if (!connection.readMore(deadline)) {
            return false;
        }
    }
    const bool isWelcome = connection.arrived().starts_with("OK ");
    connection.drop(connection.arrived().size());
    return isWelcome;
}

void writeEntry(BusWriter &message, std::string_view key, std::string_view value)
{
    if (value.empty()) {
        return;
    }
    message.align(8);
    message.string(key);
    message.signature("s");
    message.string(value);
}

// What the environment knows of how this start came about.
void writePlatformData(BusWriter &message)
{
    message.number(0);
    const std::size_t length = message.size() - sizeof(std::uint32_t);
    message.align(8);
    const std::size_t start = message.size();
    writeEntry(message, "desktop-startup-id", environment("DESKTOP_STARTUP_ID"));
    writeEntry(message, "activation-token", environment("XDG_ACTIVATION_TOKEN"));
    message.numberAt(length, std::uint32_t(message.size() - start));
}

void writeHello(BusWriter &message)
{
    message.beginCall(helloSerial);
    message.field(BusCode::Path, 'o', busPath);
    message.field(BusCode::Interface, 's', bus);
    message.field(BusCode::Member, 's', "Hello");
    message.field(BusCode::Destination, 's', bus);
    message.beginBody();
    message.endMessage();
}

void writeRequest(BusWriter &message, const char *action)
{
    message.beginCall(requestSerial);
    message.field(BusCode::Path, 'o', servicePath);
    message.field(BusCode::Interface, 's', applicationInterface);
    message.field(BusCode::Member, 's', action != nullptr ? "ActivateAction" : "Activate");
    message.field(BusCode::Destination, 's', service);
    message.field(BusCode::Signature, 'g', action != nullptr ? "sava{sv}" : "a{sv}");
    message.beginBody();
    if (action != nullptr) {
        message.string(action);
        // No parameters.
        message.number(0);
    }
    writePlatformData(message);
    message.endMessage();
}

Outcome outcomeOf(const BusHeader &answer)
{
    if (answer.type == BusCode::MethodReturn) {
        return Outcome::Done;
    }
    // Buses do not agree on how to say it.
    const bool isNobodyThere = answer.errorName == "org.freedesktop.DBus.Error.ServiceUnknown"
        || answer.errorName == "org.freedesktop.DBus.Error.NameHasNoOwner";
    return isNobodyThere && answer.sender == bus ? Outcome::NoneRuns : Outcome::Unknown;
}

Outcome readAnswer(Connection &connection)
{
    const auto deadline = now() + programPatience;
    for (;;) {
        const std::size_t length = lengthOfMessage(connection.arrived());
        if (length != 0 && length <= connection.arrived().size()) {
            const BusHeader header = headerOf(connection.arrived().substr(0, length));
            const bool isAnswer =
                header.type == BusCode::MethodReturn || header.type == BusCode::Error;
            if (isAnswer && header.replySerial == requestSerial) {
                return outcomeOf(header);
            }
            connection.drop(length);
        } else if (!connection.readMore(deadline)) {
            return Outcome::NoAnswer;
        }
    }
}

} // namespace

Outcome BusRequest::ask(const char *action)
{
    if (!canBeSent(environment("DESKTOP_STARTUP_ID"))
        || !canBeSent(environment("XDG_ACTIVATION_TOKEN"))) {
        return Outcome::Unknown;
    }
    Connection connection;
    if (!connection.open() || !authenticate(connection)) {
        return Outcome::Unknown;
    }
    BusWriter messages;
    writeHello(messages);
    writeRequest(messages, action);
    const std::string_view begin = "BEGIN\r\n";
    if (messages.hasOverflown() || !connection.write(begin)
        || !connection.write({ messages.data(), messages.size() })) {
        return Outcome::Unknown;
    }
    return readAnswer(connection);
}
