#include "platform/freedesktop/base/FileState.h"

#include <QFile>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

class Descriptor final
{
public:
    explicit Descriptor(int number)
        : _number(number)
    { }
    ~Descriptor()
    {
        if (_number >= 0) {
            ::close(_number);
        }
    }
    Q_DISABLE_COPY_MOVE(Descriptor)

    int number() const { return _number; }

private:
    int _number;
};

QString systemReason()
{
    return QString::fromLocal8Bit(std::strerror(errno));
}

// What asking for a file's status has given.
bool isRegular(int result, const struct stat &status, QString *problem)
{
    if (result != 0) {
        *problem = systemReason();
    } else if (!S_ISREG(status.st_mode)) {
        *problem = QStringLiteral("not a regular file");
    }
    return result == 0 && S_ISREG(status.st_mode);
}

// As many bytes as there are, up to `size`.
std::optional<QByteArray> readAll(int descriptor, qint64 size, QString *problem)
{
    QByteArray data(qsizetype(size), Qt::Uninitialized);
    qint64 filled = 0;
    while (filled < size) {
        const ssize_t count = ::read(descriptor, data.data() + filled, size_t(size - filled));
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            *problem = systemReason();
            return std::nullopt;
        }
        if (count == 0) {
            break;
        }
        filled += count;
    }
    data.truncate(qsizetype(filled));
    return data;
}

} // namespace

std::optional<FileState> FileState::of(const QString &path)
{
    struct stat status = {};
    if (::stat(QFile::encodeName(path).constData(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return std::nullopt;
    }
    return FileState { status.st_mtim.tv_sec * 1'000'000'000 + status.st_mtim.tv_nsec,
        status.st_size, status.st_dev, status.st_ino };
}

std::optional<QByteArray> readSmallFile(const QString &path, qint64 maximumSize, QString *problem)
{
    const QByteArray name = QFile::encodeName(path);
    struct stat status = {};
    // Opening a device may already set something going (a tape winds back), so it is asked what it
    // is before; and again afterwards, since another file may have taken its name.
    if (!isRegular(::stat(name.constData(), &status), status, problem)) {
        return std::nullopt;
    }
    const Descriptor file(::open(name.constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    const int result = file.number() < 0 ? -1 : ::fstat(file.number(), &status);
    if (!isRegular(result, status, problem)) {
        return std::nullopt;
    }
    if (status.st_size > maximumSize) {
        *problem = QStringLiteral("larger than %1 bytes").arg(maximumSize);
        return std::nullopt;
    }
    return readAll(file.number(), status.st_size, problem);
}
