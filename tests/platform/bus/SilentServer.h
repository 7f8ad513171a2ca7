// An X server that takes connections and never says a word.

#pragma once

#include <QByteArray>

#include <cstddef>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

class SilentServer final
{
public:
    SilentServer()
    {
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        // In the name space without files, where clients look first.
        const QByteArray path = "/tmp/.X11-unix/X" + _number;
        qstrncpy(address.sun_path + 1, path.constData(), sizeof(address.sun_path) - 1);
        const auto size = socklen_t(offsetof(sockaddr_un, sun_path) + 1 + size_t(path.size()));
        if (::bind(_socket, reinterpret_cast<sockaddr *>(&address), size) != 0
            || ::listen(_socket, 8) != 0) {
            qFatal("no server for display %s", _number.constData());
        }
    }
    ~SilentServer() { ::close(_socket); }
    Q_DISABLE_COPY_MOVE(SilentServer)

    QByteArray display() const { return ':' + _number; }

    // Whether a client has connected since the last time.
    bool wasReached() const
    {
        const int connection = ::accept(_socket, nullptr, nullptr);
        return connection >= 0 && ::close(connection) == 0;
    }

private:
    // No other server's.
    const QByteArray _number = QByteArray::number(1'000'000 + ::getpid());
    const int _socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
};
