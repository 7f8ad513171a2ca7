#include "platform/freedesktop/icons/IconFolder.h"

#include "platform/freedesktop/base/FolderReader.h"

#include <QFile>
#include <QHash>
#include <QSet>

#include <sys/stat.h>

static QByteArray stateOf(const QByteArray &path)
{
    struct stat status;
    if (::stat(path.constData(), &status) != 0) {
        return path + "-\n";
    }
    return path + ' ' + QByteArray::number(qint64(status.st_ino)) + ' '
        + QByteArray::number(qint64(status.st_mtim.tv_sec)) + ' '
        + QByteArray::number(qint64(status.st_mtim.tv_nsec)) + '\n';
}

static QSet<QByteArray> namesIn(const QByteArray &path)
{
    QSet<QByteArray> names;
    FolderReader folder(path);
    while (const dirent *const entry = folder.next()) {
        names.insert(QByteArray(entry->d_name));
    }
    return names;
}

IconFolder::IconFolder(const QString &path, const std::vector<IconDirectory> &directories)
    : _path(QFile::encodeName(path))
    , _cache(IconThemeCache::open(_path))
    , _state(stateOf(_path) + stateOf(_path + "/index.theme"))
    , _watched(path)
{
    if (_cache != nullptr) {
        useCache(directories);
    } else {
        useListing(directories);
    }
}

void IconFolder::useCache(const std::vector<IconDirectory> &directories)
{
    QHash<QByteArray, int> numbers;
    for (size_t i = 0; i < directories.size(); ++i) {
        numbers.insert(directories[i].path, int(i));
    }
    for (const QByteArray &directory : _cache->directories()) {
        _directories.push_back(numbers.value(directory, -1));
    }
    const QByteArray file = _path + "/icon-theme.cache";
    _state += stateOf(file);
    // One that is changed in place does not touch the folder.
    _watched.append(QFile::decodeName(file));
}

void IconFolder::useListing(const std::vector<IconDirectory> &directories)
{
    // A user's own part of a theme has a few of its hundreds of directories: one look at the folder
    // saves asking for each.
    const QSet<QByteArray> present = namesIn(_path);
    std::vector<QByteArray> folders;
    for (size_t i = 0; i < directories.size(); ++i) {
        const QByteArray &below = directories[i].path;
        const qsizetype slash = below.indexOf('/');
        const QByteArray first = slash < 0 ? below : below.first(slash);
        const QByteArray folder = _path + '/' + below;
        struct stat status;
        if (!present.contains(first) || ::stat(folder.constData(), &status) != 0) {
            continue;
        }
        const QString parent = QFile::decodeName(_path + '/' + first);
        if (_watched.last() != parent && slash >= 0) {
            _watched.append(parent);
        }
        _watched.append(QFile::decodeName(folder));
        _state += stateOf(folder);
        folders.push_back(folder);
        _directories.push_back(int(i));
    }
    _watched.removeDuplicates();
    _listing = std::make_unique<IconListing>(std::move(folders));
}

IconImages IconFolder::find(const QByteArray &name) const
{
    const IconImages found = _cache != nullptr ? _cache->find(name) : _listing->find(name);
    IconImages images;
    for (const IconImage &image : found) {
        if (size_t(image.directory) < _directories.size()) {
            const int directory = _directories[size_t(image.directory)];
            if (directory >= 0) {
                images.append({ directory, image.suffixes });
            }
        }
    }
    return images;
}
