#include "support/files/FileLock.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QThread>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

using namespace std::chrono_literals;

namespace {

// A holder writes for some milliseconds, but one that changes much may lock again at once.
constexpr auto pauseBetweenAttempts = 1ms;

int openLockFile(const QByteArray &path)
{
    const int file = ::open(path.constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NONBLOCK, 0600);
    if (file >= 0 || errno != EACCES) {
        return file;
    }
    // One that another account has made can be locked all the same.
    const int others = ::open(path.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (others < 0) {
        errno = EACCES;
    }
    return others;
}

// Where a file system has no locks, no other program holds one there either.
bool hasNoLocks(int error)
{
    return error == ENOSYS || error == ENOLCK || error == EOPNOTSUPP || error == EINVAL;
}

} // namespace

FileLock::FileLock(const QString &folder)
    : _path(folder + QStringLiteral("/.lock"))
{ }

FileLock::~FileLock()
{
    if (_file >= 0) {
        // A program that is being started may have inherited the file for a moment, so that closing
        // it is not enough.
        ::flock(_file, LOCK_UN);
        ::close(_file);
    }
}

bool FileLock::lock(std::chrono::milliseconds longestWait)
{
    if (_file < 0) {
        _file = openLockFile(QFile::encodeName(_path));
    }
    if (_file < 0) {
        _error = qt_error_string(errno);
        return false;
    }
    const QDeadlineTimer deadline(longestWait);
    while (::flock(_file, LOCK_EX | LOCK_NB) != 0) {
        if (hasNoLocks(errno)) {
            return true;
        }
        if (errno != EWOULDBLOCK && errno != EINTR) {
            _error = qt_error_string(errno);
            return false;
        }
        if (deadline.hasExpired()) {
            _error = QStringLiteral(QT_TRANSLATE_NOOP("Reason", "another program holds it"));
            return false;
        }
        QThread::msleep(pauseBetweenAttempts.count());
    }
    return true;
}
