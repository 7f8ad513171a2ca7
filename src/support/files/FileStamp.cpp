#include "support/files/FileStamp.h"

#include <QFile>

#include <algorithm>
#include <sys/stat.h>

namespace {

constexpr qint64 Second = 1'000'000'000;

qint64 nanoseconds(const timespec &time)
{
    return time.tv_sec * Second + time.tv_nsec;
}

} // namespace

bool FileStamp::hasSettledBy(qint64 moment) const
{
    return std::max(modified, recordChanged) < moment - 2 * Second;
}

FileStamp FileStamp::of(const QString &path)
{
    struct stat status = {};
    if (::stat(QFile::encodeName(path).constData(), &status) != 0) {
        return {};
    }
    return { nanoseconds(status.st_mtim), nanoseconds(status.st_ctim), status.st_size,
        status.st_ino, S_ISREG(status.st_mode) };
}

qint64 FileStamp::now()
{
    timespec time = {};
    ::clock_gettime(CLOCK_REALTIME, &time);
    return nanoseconds(time);
}

QDataStream &operator<<(QDataStream &stream, const FileStamp &stamp)
{
    return stream << stamp.modified << stamp.recordChanged << stamp.size << stamp.number
                  << stamp.isRegular;
}

QDataStream &operator>>(QDataStream &stream, FileStamp &stamp)
{
    return stream >> stamp.modified >> stamp.recordChanged >> stamp.size >> stamp.number
        >> stamp.isRegular;
}
