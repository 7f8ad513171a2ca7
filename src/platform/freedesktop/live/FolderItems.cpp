#include "platform/freedesktop/live/FolderItems.h"

#include "platform/freedesktop/base/FolderReader.h"

#include <QFile>

#include <algorithm>

QString FolderItems::inFolder(const QString &folder, const QString &name)
{
    return folder.endsWith(QLatin1Char('/')) ? folder + name : folder + QLatin1Char('/') + name;
}

QString FolderItems::parentOf(const QString &path)
{
    return path.left(std::max<qsizetype>(1, path.lastIndexOf(QLatin1Char('/'))));
}

QString FolderItems::nameOf(const QString &path)
{
    return path.mid(path.lastIndexOf(QLatin1Char('/')) + 1);
}

std::optional<struct stat> FolderItems::statusOf(const QString &path)
{
    struct stat status = {};
    const bool isThere = ::stat(QFile::encodeName(path).constData(), &status) == 0;
    return isThere ? std::optional(status) : std::nullopt;
}

bool FolderItems::isFolder(const QString &path)
{
    const auto status = statusOf(path);
    return status && S_ISDIR(status->st_mode);
}

bool FolderItems::isThere(const QString &path)
{
    struct stat status = {};
    return ::lstat(QFile::encodeName(path).constData(), &status) == 0;
}

bool FolderItems::isLink(const QString &path)
{
    struct stat status = {};
    return ::lstat(QFile::encodeName(path).constData(), &status) == 0 && S_ISLNK(status.st_mode);
}

FileState FolderItems::stateOf(const QString &path)
{
    const auto status = statusOf(path);
    return status ? FileState { status->st_mtim.tv_sec * 1'000'000'000 + status->st_mtim.tv_nsec,
        status->st_size, status->st_dev, status->st_ino }
                  : FileState {};
}

QStringList FolderItems::namesIn(const QString &path)
{
    QStringList names;
    FolderReader reader(QFile::encodeName(path));
    while (const dirent *const item = reader.next()) {
        const QByteArray nameOnDisk(item->d_name);
        const QString name = QFile::decodeName(nameOnDisk);
        if (nameOnDisk != "." && nameOnDisk != ".." && QFile::encodeName(name) == nameOnDisk) {
            names.append(name);
        }
    }
    return names;
}
