#include "platform/freedesktop/entries/EntryTable.h"

#include "platform/freedesktop/base/FileState.h"
#include "platform/freedesktop/entries/DesktopEntryIndex.h"

#include <QFile>

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

bool EntryTable::isOutdated() const
{
    return _folderTimes.isEmpty() || _scan != _entries.scan() || _folderTimes != folderTimes();
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
    _ids.forget();
    _byPath.clear();
    _byId.clear();
    for (Matches *matches : { &_byDeclaredClass, &_byFoldedId, &_byProgramName, &_bySandbox }) {
        matches->clear();
    }
    _known.clear();
    const QHash<QString, QString> paths = _ids.pathsById();
    for (auto it = paths.begin(); it != paths.end(); ++it) {
        const auto entry = _entries.entryAt(it.value());
        if (entry && entry->kind == DesktopEntry::Kind::Application && !entry->isHidden) {
            const bool isShown = !entry->isNoDisplay && entry->isShownIn(_currentDesktops);
            _known.push_back({ it.value(), it.key().chopped(ending.size()), entry, isShown });
        }
    }
    std::sort(_known.begin(), _known.end(),
        [](const KnownEntry &one, const KnownEntry &other) { return one.path < other.path; });
    for (const KnownEntry &known : _known) {
        add(known);
    }
}

void EntryTable::add(const KnownEntry &known)
{
    const DesktopEntry &entry = *known.entry;
    const auto addTo = [&known](Matches &matches, const QString &key) {
        if (!key.isEmpty()) {
            matches[key].append(&known);
        }
    };
    _byPath.insert(known.path, &known);
    _byId.insert(known.id, &known);
    const QString folded = known.id.toCaseFolded();
    addTo(_byFoldedId, folded);
    if (const qsizetype dot = folded.lastIndexOf(QLatin1Char('.')); dot >= 0) {
        addTo(_byFoldedId, folded.mid(dot + 1));
    }
    addTo(_byDeclaredClass, entry.startupWMClass.toCaseFolded());
    addTo(_byProgramName, entry.program.section(QLatin1Char('/'), -1));
    if (!entry.flatpakId.isEmpty()) {
        addTo(_bySandbox, flatpakKey(entry.flatpakId));
    }
    if (!entry.snapName.isEmpty()) {
        addTo(_bySandbox, snapKey(entry.snapName));
    }
}

EntryMatches EntryTable::byDeclaredClass(const QString &name) const
{
    return _byDeclaredClass.value(name.toCaseFolded());
}

EntryMatches EntryTable::byFoldedId(const QString &name) const
{
    return _byFoldedId.value(name.toCaseFolded());
}

EntryMatches EntryTable::byProgramName(const QString &fileName) const
{
    return _byProgramName.value(fileName);
}

EntryMatches EntryTable::byFlatpakId(const QString &flatpakId) const
{
    return _bySandbox.value(flatpakKey(flatpakId));
}

EntryMatches EntryTable::bySnapName(const QString &snapName) const
{
    return _bySandbox.value(snapKey(snapName));
}
