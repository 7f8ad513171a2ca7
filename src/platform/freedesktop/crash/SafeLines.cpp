#include "platform/freedesktop/crash/SafeLines.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

void SafeLines::open(const char *path)
{
    _begin = 0;
    _end = 0;
    _descriptor = ::open(path, O_RDONLY | O_CLOEXEC);
}

char *SafeLines::next()
{
    while (_descriptor >= 0) {
        char *const begin = _buffer.data() + _begin;
        char *const end = _buffer.data() + _end;
        if (char *const lineEnd = std::find(begin, end, '\n'); lineEnd != end) {
            *lineEnd = 0;
            _begin = static_cast<std::size_t>(lineEnd - _buffer.data()) + 1;
            return begin;
        }
        // What there is of the line moves to the front, unless it fills all.
        const bool isTooLong = _end - _begin == _buffer.size();
        _end = isTooLong
            ? 0
            : static_cast<std::size_t>(std::copy(begin, end, _buffer.data()) - _buffer.data());
        _begin = 0;
        const ssize_t count = ::read(_descriptor, &_buffer[_end], _buffer.size() - _end);
        if (count > 0) {
            _end += static_cast<std::size_t>(count);
        } else if (count == 0 || errno != EINTR) {
            ::close(_descriptor);
            _descriptor = -1;
        }
    }
    return nullptr;
}
