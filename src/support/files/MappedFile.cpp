#include "support/files/MappedFile.h"

#include <QFile>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <mutex>
#include <sys/eventfd.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

// What the signal handler has to know of a map. It takes no lock: it may interrupt whatever holds
// one.
struct MapGuard
{
    std::atomic<bool> isTaken = false;
    std::atomic<uintptr_t> begin = 0;
    std::atomic<uintptr_t> end = 0;
    std::atomic<bool> isDamaged = false;
};

namespace {

// The one in use, the one that takes its place, and what still shows pictures of older ones.
constexpr size_t MostMaps = 32;

std::array<MapGuard, MostMaps> guards;
struct sigaction previousAction = {};
std::atomic<int> alarmDescriptor = -1;
uintptr_t pageSize = 4096;

MapGuard *guardOf(uintptr_t address)
{
    for (MapGuard &guard : guards) {
        if (guard.begin <= address && address < guard.end) {
            return &guard;
        }
    }
    return nullptr;
}

void passOn(int signal, siginfo_t *info, void *context)
{
    if ((previousAction.sa_flags & SA_SIGINFO) != 0) {
        previousAction.sa_sigaction(signal, info, context);
    } else if (previousAction.sa_handler != SIG_DFL && previousAction.sa_handler != SIG_IGN) {
        previousAction.sa_handler(signal);
    } else {
        // The instruction is tried again when this returns, and ends the program.
        ::signal(signal, SIG_DFL);
    }
}

// Puts a page of zeros where one cannot be read. Uses only what a signal handler may.
void handleBusError(int signal, siginfo_t *info, void *context)
{
    const int error = errno;
    const auto address = reinterpret_cast<uintptr_t>(info->si_addr);
    MapGuard *const guard = info->si_code == BUS_ADRERR ? guardOf(address) : nullptr;
    void *const page = reinterpret_cast<void *>(address & ~(pageSize - 1));
    if (guard == nullptr
        || ::mmap(page, pageSize, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED, -1, 0)
            == MAP_FAILED) {
        passOn(signal, info, context);
        return;
    }
    if (!guard->isDamaged.exchange(true)) {
        const uint64_t one = 1;
        [[maybe_unused]] const ssize_t written = ::write(alarmDescriptor, &one, sizeof(one));
    }
    errno = error;
}

void installHandler()
{
    static std::once_flag installed;
    std::call_once(installed, [] {
        pageSize = uintptr_t(::sysconf(_SC_PAGESIZE));
        alarmDescriptor = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
        struct sigaction action = {};
        action.sa_sigaction = handleBusError;
        action.sa_flags = SA_SIGINFO | SA_ONSTACK;
        ::sigemptyset(&action.sa_mask);
        ::sigaction(SIGBUS, &action, &previousAction);
    });
}

// Empty when the file may be used.
QString refusal(const struct stat &status, qint64 fewestBytes, qint64 mostBytes)
{
    if (!S_ISREG(status.st_mode)) {
        return QStringLiteral("not a regular file");
    }
    if (status.st_uid != ::geteuid()) {
        return QStringLiteral("it belongs to another user");
    }
    if ((status.st_mode & (S_IWGRP | S_IWOTH)) != 0) {
        return QStringLiteral("other users may write to it");
    }
    return status.st_size < fewestBytes || status.st_size > mostBytes
        ? QStringLiteral("its length of %1 bytes is out of range").arg(status.st_size)
        : QString();
}

MapGuard *claimGuard(const void *data, qint64 size)
{
    for (MapGuard &guard : guards) {
        if (!guard.isTaken.exchange(true)) {
            guard.isDamaged = false;
            guard.end = reinterpret_cast<uintptr_t>(data) + uintptr_t(size);
            guard.begin = reinterpret_cast<uintptr_t>(data);
            return &guard;
        }
    }
    return nullptr;
}

} // namespace

MappedFile::MappedFile(int descriptor, const uchar *data, qint64 size, MapGuard &guard)
    : _descriptor(descriptor)
    , _data(data)
    , _size(size)
    , _guard(guard)
{ }

MappedFile::~MappedFile()
{
    // First of all: other memory may come to lie there.
    _guard.begin = 0;
    _guard.end = 0;
    ::munmap(const_cast<uchar *>(_data), size_t(_size));
    ::close(_descriptor);
    _guard.isTaken = false;
}

std::shared_ptr<const MappedFile> MappedFile::open(
    const QString &path, qint64 fewestBytes, qint64 mostBytes, QString *problem)
{
    problem->clear();
    const int file = ::open(QFile::encodeName(path).constData(),
        O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (file < 0) {
        *problem = errno == ENOENT ? QString() : qt_error_string(errno);
        return nullptr;
    }
    struct stat status = {};
    *problem = ::fstat(file, &status) != 0 ? qt_error_string(errno)
                                           : refusal(status, fewestBytes, mostBytes);
    void *data = MAP_FAILED;
    if (problem->isEmpty()) {
        installHandler();
        data = ::mmap(nullptr, size_t(status.st_size), PROT_READ, MAP_SHARED, file, 0);
        *problem = data == MAP_FAILED ? qt_error_string(errno) : QString();
    }
    MapGuard *const guard = data == MAP_FAILED ? nullptr : claimGuard(data, status.st_size);
    if (guard == nullptr) {
        if (data != MAP_FAILED) {
            *problem = QStringLiteral("too many files are in use");
            ::munmap(data, size_t(status.st_size));
        }
        ::close(file);
        return nullptr;
    }
    return std::shared_ptr<const MappedFile>(
        new MappedFile(file, static_cast<const uchar *>(data), status.st_size, *guard));
}

bool MappedFile::isDamaged() const
{
    return _guard.isDamaged;
}

QByteArray MappedFile::copy(qint64 offset, qint64 count) const
{
    if (offset < 0 || count < 0 || count > _size - offset) {
        return {};
    }
    QByteArray bytes(count, Qt::Uninitialized);
    qint64 filled = 0;
    while (filled < count) {
        const ssize_t read =
            ::pread(_descriptor, bytes.data() + filled, size_t(count - filled), offset + filled);
        if (read < 0 && errno == EINTR) {
            continue;
        }
        if (read <= 0) {
            return {};
        }
        filled += read;
    }
    return bytes;
}

int MappedFile::alarm()
{
    installHandler();
    return alarmDescriptor;
}
