#include "commands/EndingSignals.h"

#include <QCoreApplication>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr std::array<int, 3> Handled { SIGTERM, SIGHUP, SIGINT };

// Where the signal handler writes.
std::atomic<int> toldEnd = -1;

void noteEnding(int)
{
    const int error = errno;
    const char mark = 0;
    [[maybe_unused]] const ssize_t written = ::write(toldEnd, &mark, 1);
    errno = error;
}

void exchangeHandler(int signal, void (*from)(int), void (*to)(int))
{
    struct sigaction present = {};
    if (::sigaction(signal, nullptr, &present) != 0 || (present.sa_flags & SA_SIGINFO) != 0
        || present.sa_handler != from) {
        return;
    }
    struct sigaction wanted = {};
    wanted.sa_handler = to;
    wanted.sa_flags = SA_RESTART | SA_RESETHAND;
    ::sigaction(signal, &wanted, nullptr);
}

} // namespace

EndingSignals::EndingSignals()
{
    if (::pipe2(_ends.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
        return;
    }
    _notifier = std::make_unique<QSocketNotifier>(_ends[0], QSocketNotifier::Read);
    QObject::connect(_notifier.get(), &QSocketNotifier::activated, _notifier.get(), [this] {
        _notifier->setEnabled(false);
        QCoreApplication::exit();
    });
    toldEnd = _ends[1];
    for (const int signal : Handled) {
        exchangeHandler(signal, SIG_DFL, noteEnding);
    }
}

EndingSignals::~EndingSignals()
{
    if (!_notifier) {
        return;
    }
    for (const int signal : Handled) {
        exchangeHandler(signal, noteEnding, SIG_DFL);
    }
    toldEnd = -1;
    _notifier.reset();
    for (const int end : _ends) {
        ::close(end);
    }
}
