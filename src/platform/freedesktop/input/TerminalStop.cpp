#include "platform/freedesktop/input/TerminalStop.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace {

// Where the signal handler writes; -1 while there is nothing to tell.
std::atomic<int> toldEnd = -1;

void noteStop(int)
{
    const int error = errno;
    const char mark = 0;
    // Nothing is lost when the pipe is full: one mark is enough.
    [[maybe_unused]] const ssize_t written = ::write(toldEnd, &mark, 1);
    errno = error;
}

} // namespace

TerminalStop::TerminalStop(QObject *parent)
    : QObject(parent)
{
    struct sigaction present = {};
    const bool isFree = ::sigaction(SIGTSTP, nullptr, &present) == 0
        && (present.sa_flags & SA_SIGINFO) == 0 && present.sa_handler == SIG_DFL;
    if (!isFree || ::pipe2(_ends.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
        return;
    }
    _notifier = std::make_unique<QSocketNotifier>(_ends[0], QSocketNotifier::Read);
    connect(_notifier.get(), &QSocketNotifier::activated, this, &TerminalStop::stop);
    toldEnd = _ends[1];
    struct sigaction ours = {};
    ours.sa_handler = noteStop;
    ours.sa_flags = SA_RESTART;
    ::sigaction(SIGTSTP, &ours, nullptr);
}

TerminalStop::~TerminalStop()
{
    if (!_notifier) {
        return;
    }
    ::signal(SIGTSTP, SIG_DFL);
    toldEnd = -1;
    _notifier.reset();
    for (const int end : _ends) {
        ::close(end);
    }
}

// This signal cannot be handled, so raise() returns only when the program goes on.
void TerminalStop::stop()
{
    std::array<char, 16> marks {};
    while (::read(_ends[0], marks.data(), marks.size()) > 0) { }
    Q_EMIT stopping();
    ::raise(SIGSTOP);
    Q_EMIT continued();
}
