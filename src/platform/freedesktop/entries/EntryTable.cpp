#include "platform/freedesktop/entries/EntryTable.h"

#include "platform/freedesktop/base/FileState.h"
#include "platform/freedesktop/entries/DesktopEntryIndex.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <sys/stat.h>

namespace {

const QString ending = QStringLiteral(".desktop");

QString flatpakKey(const QString &flatpakId)
{
    return QStringLiteral("flatpak ") + flatpakId;
}

QString snapKey(const QString &snapName)
{
    return QStringLiteral("snap ") + snapName;
}

} // namespace

EntryTable::EntryTable(
    DesktopEntryIndex &entries, const QStringList &dataFolders, QStringList currentDesktops)
    : _entries(entries)
    , _dataFolders(dataFolders)
    , _currentDesktops(std::move(currentDesktops))
    , _ids(dataFolders)
{ }

bool EntryTable::setApplications(const QStringList &paths)
{
    QStringList folders = _dataFolders;
    for (QString &folder : folders) {
        folder += QStringLiteral("/applications/");
    }
    QStringList outside = paths;
    outside.removeIf([&folders](const QString &path) {
        const auto isBelow = [&path](const QString &folder) { return path.startsWith(folder); };
        return !path.endsWith(ending) || std::any_of(folders.cbegin(), folders.cend(), isBelow);
    });
    const bool areOther = outside != _applications;
    _applications = outside;
    _areApplicationsOther = _areApplicationsOther || areOther;
    return areOther;
}

bool EntryTable::isOutdated() const
{
    return _areApplicationsOther || _folderTimes.isEmpty() || _scan != _entries.scan()
        || _folderTimes != folderTimes();
}

QList<qint64> EntryTable::folderTimes() const
{
    QList<qint64> times;
    for (const QString &dataFolder : _dataFolders) {
        struct stat status = {};
        const QString folder = dataFolder + QStringLiteral("/applications");
        const bool isThere = ::stat(QFile::encodeName(folder).constData(), &status) == 0;
        times.append(isThere ? status.st_mtim.tv_sec * 1'000'000'000 + status.st_mtim.tv_nsec : -1);
    }
    return times;
}

void EntryTable::refresh()
{
    _scan = _entries.scan();
    _folderTimes = folderTimes();
    _areApplicationsOther = false;
    _ids.forget();
    _byPath.clear();
    _byId.clear();
    _inside = {};
    _outside = {};
    _known.clear();
    const QHash<QString, QString> paths = _ids.pathsById();
    for (auto it = paths.begin(); it != paths.end(); ++it) {
        read(it.value(), it.key().chopped(ending.size()));
    }
    const auto countInside = qsizetype(_known.size());
    for (const QString &path : std::as_const(_applications)) {
        read(path, QFileInfo(path).completeBaseName());
    }
    const auto outside = _known.begin() + countInside;
    const auto isBefore = [](const KnownEntry &one, const KnownEntry &other) {
        return one.path < other.path;
    };
    std::sort(_known.begin(), outside, isBefore);
    std::sort(outside, _known.end(), isBefore);
    for (auto known = _known.begin(); known != _known.end(); ++known) {
        if (known < outside) {
            _byId.insert(known->id, &*known);
        }
        add(*known, known < outside ? _inside : _outside);
    }
}

void EntryTable::read(const QString &path, const QString &id)
{
    const auto entry = _entries.entryAt(path);
    if (entry && entry->kind == DesktopEntry::Kind::Application && !entry->isHidden) {
        const bool isShown = !entry->isNoDisplay && entry->isShownIn(_currentDesktops);
        _known.push_back({ path, id, entry, isShown });
    }
}

void EntryTable::add(const KnownEntry &known, Matchings &matchings)
{
    const DesktopEntry &entry = *known.entry;
    const auto addTo = [&known](Matches &matches, const QString &key) {
        if (!key.isEmpty()) {
            matches[key].append(&known);
        }
    };
    _byPath.insert(known.path, &known);
    const QString folded = known.id.toCaseFolded();
    addTo(matchings.byFoldedId, folded);
    if (const qsizetype dot = folded.lastIndexOf(QLatin1Char('.')); dot >= 0) {
        addTo(matchings.byFoldedId, folded.mid(dot + 1));
    }
    addTo(matchings.byDeclaredClass, entry.startupWMClass.toCaseFolded());
    addTo(matchings.byProgramName, entry.program.section(QLatin1Char('/'), -1));
    if (!entry.flatpakId.isEmpty()) {
        addTo(matchings.bySandbox, flatpakKey(entry.flatpakId));
    }
    if (!entry.snapName.isEmpty()) {
        addTo(matchings.bySandbox, snapKey(entry.snapName));
    }
}

EntryMatches EntryTable::found(Matches Matchings::*kind, const QString &key) const
{
    const EntryMatches inside = (_inside.*kind).value(key);
    return inside.isEmpty() ? (_outside.*kind).value(key) : inside;
}

EntryMatches EntryTable::byDeclaredClass(const QString &name) const
{
    return found(&Matchings::byDeclaredClass, name.toCaseFolded());
}

EntryMatches EntryTable::byFoldedId(const QString &name) const
{
    return found(&Matchings::byFoldedId, name.toCaseFolded());
}

EntryMatches EntryTable::byProgramName(const QString &fileName) const
{
    return found(&Matchings::byProgramName, fileName);
}

EntryMatches EntryTable::byFlatpakId(const QString &flatpakId) const
{
    return found(&Matchings::bySandbox, flatpakKey(flatpakId));
}

EntryMatches EntryTable::bySnapName(const QString &snapName) const
{
    return found(&Matchings::bySandbox, snapKey(snapName));
}
