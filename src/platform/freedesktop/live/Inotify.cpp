#include "platform/freedesktop/live/Inotify.h"

#include <QFile>

#include <array>
#include <cerrno>
#include <cstring>
#include <sys/inotify.h>
#include <unistd.h>

Inotify::Inotify(qsizetype mostWatches)
    : _descriptor(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC))
    , _mostWatches(mostWatches)
{ }

Inotify::~Inotify()
{
    if (_descriptor >= 0) {
        ::close(_descriptor);
    }
}

int Inotify::add(const QString &path, uint32_t mask)
{
    if (_descriptor < 0) {
        _isShort = true;
        return NoWatch;
    }
    const int watch = ::inotify_add_watch(
        _descriptor, QFile::encodeName(path).constData(), mask | IN_ONLYDIR | IN_MASK_ADD);
    if (watch < 0) {
        _isShort = _isShort || errno == ENOSPC || errno == ENOMEM;
        return NoWatch;
    }
    if (!_watches.contains(watch) && _watches.size() >= _mostWatches) {
        ::inotify_rm_watch(_descriptor, watch);
        _isShort = true;
        return NoWatch;
    }
    _watches.insert(watch);
    return watch;
}

void Inotify::remove(int watch)
{
    if (_watches.remove(watch)) {
        ::inotify_rm_watch(_descriptor, watch);
    }
}

void Inotify::read(const std::function<void(const Event &)> &take)
{
    constexpr size_t BufferSize = 65'536;
    alignas(inotify_event) std::array<char, BufferSize> buffer;
    while (true) {
        const ssize_t size = ::read(_descriptor, buffer.data(), buffer.size());
        if (size < 0 && errno == EINTR) {
            continue;
        }
        if (size <= 0) {
            return;
        }
        for (ssize_t at = 0; at < size;) {
            inotify_event event = {};
            std::memcpy(&event, buffer.data() + at, sizeof event);
            // The name is filled up with zeros.
            const char *const name = buffer.data() + at + sizeof event;
            if ((event.mask & IN_IGNORED) != 0) {
                _watches.remove(event.wd);
            }
            take({ event.wd, event.mask, event.len > 0 ? QByteArray(name) : QByteArray() });
            at += ssize_t(sizeof event + event.len);
        }
    }
}
