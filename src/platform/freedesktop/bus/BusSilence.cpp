#include "platform/freedesktop/bus/BusSilence.h"

#include <QByteArrayList>

#include <cerrno>
#include <cstddef>
#include <cstring>
#include <poll.h>
#include <string_view>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

// Of an address such as "unix:path=/run/user/1000/bus" or "unix:abstract=/tmp/dbus-x,guid=y", as
// the system wants it: a name without a file begins with a zero. Empty for every other kind.
QByteArray socketName(const QByteArray &address)
{
    const QByteArray prefix("unix:");
    if (!address.startsWith(prefix) || address.contains(';')) {
        return {};
    }
    for (const QByteArray &part : address.mid(prefix.size()).split(',')) {
        QByteArray value = QByteArray::fromPercentEncoding(part.mid(part.indexOf('=') + 1));
        if (part.startsWith("path=")) {
            return value;
        }
        if (part.startsWith("abstract=")) {
            return '\0' + value;
        }
    }
    return {};
}

bool isSilent(int connection, const sockaddr_un &name, size_t size, int patience)
{
    const auto *const generic = reinterpret_cast<const sockaddr *>(&name);
    if (::connect(connection, generic, socklen_t(size)) != 0) {
        // As many are waiting as the system lets wait.
        return errno == EAGAIN;
    }
    // Without a way to authenticate a bus answers with those that it knows.
    constexpr std::string_view greeting("\0AUTH\r\n", 7);
    if (::send(connection, greeting.data(), greeting.size(), MSG_NOSIGNAL) < 0) {
        return false;
    }
    pollfd answer { connection, POLLIN, 0 };
    return ::poll(&answer, 1, patience) == 0;
}

} // namespace

bool isBusSilent(const QByteArray &address, std::chrono::milliseconds patience)
{
    const QByteArray path = socketName(address);
    sockaddr_un name = {};
    name.sun_family = AF_UNIX;
    if (path.isEmpty() || size_t(path.size()) > sizeof(name.sun_path)) {
        return false;
    }
    std::memcpy(name.sun_path, path.constData(), size_t(path.size()));
    const int connection = ::socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    if (connection < 0) {
        return false;
    }
    const size_t size = offsetof(sockaddr_un, sun_path) + size_t(path.size());
    const bool isOne = isSilent(connection, name, size, int(patience.count()));
    ::close(connection);
    return isOne;
}
