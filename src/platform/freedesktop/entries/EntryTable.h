// The desktop entries of the system by what windows and processes may know of them.
//
// Each ID stands once, with the entry that counts; deleted, broken and foreign ones are left out.
// Entries elsewhere, which the user has searched as well, count where no other fits.

#pragma once

#include "platform/freedesktop/entries/DesktopEntry.h"
#include "platform/freedesktop/entries/DesktopFileIds.h"

#include <QHash>

#include <memory>
#include <vector>

class DesktopEntryIndex;

struct KnownEntry
{
    QString path;
    // Without `.desktop`.
    QString id;
    std::shared_ptr<const DesktopEntry> entry;
    // Meant to be seen in the menus of this desktop.
    bool isShown = true;
};

// In the order of their paths.
using EntryMatches = QList<const KnownEntry *>;

class EntryTable final
{
public:
    // The index outlives this. Data folders and desktops as for FreedesktopItems. Nothing is read
    // before refresh().
    EntryTable(
        DesktopEntryIndex &entries, const QStringList &dataFolders, QStringList currentDesktops);

    // What applications there are, by their paths, so that those outside the folders are known.
    // True when there are others outside than before.
    bool setApplications(const QStringList &paths);

    // Whether a scan was begun, or a folder of entries or what is outside was changed, since the
    // last refresh.
    bool isOutdated() const;
    // Reads the entries anew. What was returned before is no longer valid.
    void refresh();

    // Null when there is none.
    const KnownEntry *byPath(const QString &path) const { return _byPath.value(path); }
    const KnownEntry *byId(const QString &id) const { return _byId.value(id); }
    // Whose StartupWMClass that is, in whatever case.
    EntryMatches byDeclaredClass(const QString &name) const;
    // Whose ID that is, in whatever case, whole or from its last dot on.
    EntryMatches byFoldedId(const QString &name) const;
    // Whose program has that file name.
    EntryMatches byProgramName(const QString &fileName) const;
    EntryMatches byFlatpakId(const QString &flatpakId) const;
    EntryMatches bySnapName(const QString &snapName) const;

private:
    using Matches = QHash<QString, EntryMatches>;
    struct Matchings
    {
        Matches byDeclaredClass;
        Matches byFoldedId;
        Matches byProgramName;
        Matches bySandbox;
    };

    void read(const QString &path, const QString &id);
    void add(const KnownEntry &known, Matchings &matchings);
    EntryMatches found(Matches Matchings::*kind, const QString &key) const;
    QList<qint64> folderTimes() const;

    DesktopEntryIndex &_entries;
    const QStringList _dataFolders;
    const QStringList _currentDesktops;
    DesktopFileIds _ids;
    quint64 _scan = 0;
    QList<qint64> _folderTimes;

    QStringList _applications;
    bool _areApplicationsOther = false;

    std::vector<KnownEntry> _known;
    QHash<QString, const KnownEntry *> _byPath;
    QHash<QString, const KnownEntry *> _byId;
    // In the data folders, and outside.
    Matchings _inside;
    Matchings _outside;
};
