#include "platform/freedesktop/entries/DesktopFileIds.h"

#include "platform/freedesktop/base/FolderReader.h"

#include <QFile>
#include <QFileInfo>
#include <QSet>

#include <sys/stat.h>

namespace {

// Entries are not nested deeper; links can be.
constexpr int deepestFolder = 16;

// Collects the IDs below one folder. Links to folders are followed, but no folder is entered twice.
class IdCollector final
{
public:
    QHash<QString, QString> collect(const QByteArray &folder)
    {
        visit(folder, QByteArray(), 0);
        return std::move(_pathsById);
    }

private:
    void visit(const QByteArray &folder, const QByteArray &idPrefix, int depth);
    void take(const QByteArray &folder, const QByteArray &idPrefix, const dirent &item, int depth);

    QHash<QString, QString> _pathsById;
    QSet<std::pair<quint64, quint64>> _visited;
};

void IdCollector::visit(const QByteArray &folder, const QByteArray &idPrefix, int depth)
{
    FolderReader directory(folder);
    struct stat status = {};
    if (!directory.isOpen() || depth > deepestFolder
        || ::fstat(directory.descriptor(), &status) != 0) {
        return;
    }
    const std::pair<quint64, quint64> identity(status.st_dev, status.st_ino);
    if (_visited.contains(identity)) {
        return;
    }
    _visited.insert(identity);
    while (const dirent *const item = directory.next()) {
        if (item->d_name[0] != '.') {
            take(folder, idPrefix, *item, depth);
        }
    }
}

void IdCollector::take(
    const QByteArray &folder, const QByteArray &idPrefix, const dirent &item, int depth)
{
    const QByteArray name(item.d_name);
    const bool isNamedEntry = name.endsWith(".desktop");
    bool isFolder = item.d_type == DT_DIR;
    bool isThere = item.d_type == DT_REG;
    if (item.d_type == DT_LNK || item.d_type == DT_UNKNOWN) {
        struct stat status = {};
        isThere = ::stat((folder + '/' + name).constData(), &status) == 0;
        isFolder = isThere && S_ISDIR(status.st_mode);
    }
    if (isFolder) {
        visit(folder + '/' + name, idPrefix + name + '-', depth + 1);
    } else if (isThere && isNamedEntry) {
        _pathsById.insert(
            QFile::decodeName(idPrefix + name), QFile::decodeName(folder + '/' + name));
    }
}

// The ID prefix of entries in `folder` when that is `applications` or lies below it.
std::optional<QString> prefixBelow(const QString &applications, const QString &folder)
{
    if (folder == applications) {
        return QString();
    }
    const QString start = applications + QLatin1Char('/');
    if (applications.isEmpty() || !folder.startsWith(start)) {
        return std::nullopt;
    }
    return folder.mid(start.size()).replace(QLatin1Char('/'), QLatin1Char('-')) + QLatin1Char('-');
}

} // namespace

DesktopFileIds::DesktopFileIds(const QStringList &dataFolders)
{
    for (const QString &dataFolder : dataFolders) {
        _folders.append({ dataFolder + QStringLiteral("/applications"), {} });
    }
}

void DesktopFileIds::forget()
{
    const QMutexLocker lock(&_mutex);
    _standings.clear();
    for (Folder &folder : _folders) {
        folder.pathsById.reset();
    }
}

bool DesktopFileIds::isShadowed(const QString &path)
{
    const QMutexLocker lock(&_mutex);
    const Standing &standing = knownStandingOf(path);
    const QString id = standing.idOf(path);
    for (qsizetype i = 0; i < standing.dataFolder; ++i) {
        if (entriesIn(_folders[i]).contains(id)) {
            return true;
        }
    }
    return false;
}

QString DesktopFileIds::pathThatCounts(const QString &path)
{
    const QMutexLocker lock(&_mutex);
    const Standing &standing = knownStandingOf(path);
    if (!standing.isBelowDataFolder) {
        return path;
    }
    const QString id = standing.idOf(path);
    for (qsizetype i = 0; i < _folders.size(); ++i) {
        const QString counting = entriesIn(_folders[i]).value(id);
        if (counting.isEmpty()) {
            continue;
        }
        // One folder may have two names, and an ID stand for two files of one folder.
        const bool isOwnFolder = i == standing.dataFolder;
        return isOwnFolder && QFileInfo::exists(path) ? path : counting;
    }
    return path;
}

QString DesktopFileIds::Standing::idOf(const QString &path) const
{
    return idPrefix + path.mid(path.lastIndexOf(QLatin1Char('/')) + 1);
}

const DesktopFileIds::Standing &DesktopFileIds::knownStandingOf(const QString &path)
{
    const QString folder = path.left(path.lastIndexOf(QLatin1Char('/')));
    auto standing = _standings.constFind(folder);
    if (standing == _standings.constEnd()) {
        standing = _standings.insert(folder, standingOf(folder));
    }
    return *standing;
}

// A folder is first looked for under the name the environment gave it, because one and the same
// folder may be listed under two names and then holds its entries only once. A folder that is none
// of ours stands first.
DesktopFileIds::Standing DesktopFileIds::standingOf(const QString &folder) const
{
    for (qsizetype i = 0; i < _folders.size(); ++i) {
        if (const std::optional<QString> prefix = prefixBelow(_folders.at(i).path, folder)) {
            return { i, *prefix, true };
        }
    }
    const QString canonical = QFileInfo(folder).canonicalFilePath();
    for (qsizetype i = 0; i < _folders.size(); ++i) {
        const QString applications = QFileInfo(_folders.at(i).path).canonicalFilePath();
        if (const std::optional<QString> prefix = prefixBelow(applications, canonical)) {
            return { i, *prefix, true };
        }
    }
    return {};
}

QHash<QString, QString> DesktopFileIds::pathsById()
{
    const QMutexLocker lock(&_mutex);
    QHash<QString, QString> paths;
    for (qsizetype i = _folders.size() - 1; i >= 0; --i) {
        paths.insert(entriesIn(_folders[i]));
    }
    return paths;
}

const QHash<QString, QString> &DesktopFileIds::entriesIn(Folder &folder)
{
    if (!folder.pathsById) {
        folder.pathsById = IdCollector().collect(QFile::encodeName(folder.path));
    }
    return *folder.pathsById;
}
