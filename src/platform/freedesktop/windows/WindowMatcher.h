// Which application a window belongs to.
//
// Windows name themselves carelessly, so the surest sign counts first, and a window that several
// applications could claim with equal right belongs to none:
//
// 1. The sandbox, which the system enforces: nothing inside it can pass for something outside.
// 2. The entry that the process was started for, where that runs in a terminal: all else would name
//    the terminal.
// 3. The ID of an entry that its toolkit wrote on the window. It is written for this very purpose.
// 4. The window class that an entry declares. It goes before the entry of the start, since one
//    process may show windows of several entries, each with its own class.
// 5. The entry of the start, where an entry of the class's name is only another entry of the same
//    program; then the window class as the ID of an entry. The end of an ID is a common word often
//    enough, so the executable must not speak against it.
// 6. The bundle that the executable is in; else the entry of the start.
// 7. The executable itself, unless it only runs other programs; of an interpreter, its script.
// 8. The start-up identifier, where the program that it was given to has made another one and
// ended.
// 9. The unit that the session's manager made for the application, for the first process in it.

#pragma once

#include "platform/freedesktop/entries/EntryTable.h"
#include "platform/freedesktop/windows/ProcessTraits.h"
#include "platform/freedesktop/windows/WindowTraits.h"

class WindowMatcher final
{
public:
    // The index outlives this.
    WindowMatcher(
        DesktopEntryIndex &entries, const QStringList &dataFolders, const QStringList &desktops);

    // As EntryTable has it.
    bool setApplications(const QStringList &paths) { return _table.setApplications(paths); }
    // Whether entries have come or gone since they were last read.
    bool isOutdated() const { return _table.isOutdated(); }
    void refresh() { _table.refresh(); }

    // The path of the bundle; empty when there is none, or when it cannot be told for sure.
    QString bundleOf(const WindowTraits &window, const ProcessTraits &process) const;

    // The path of the entry with an ID, given without `.desktop`; empty when there is none.
    QString pathOfId(const QString &id) const;

private:
    const KnownEntry *inSandbox(
        const EntryMatches &members, const QString &name, const WindowTraits &window) const;
    const KnownEntry *launchedEntry(const ProcessTraits &process, KnownEntry &outside) const;
    const KnownEntry *namedByToolkit(const WindowTraits &window) const;
    const KnownEntry *byClass(
        const WindowTraits &window, const ProcessTraits &process, const KnownEntry *launched) const;
    const KnownEntry *byId(const QString &name, const ProcessTraits &process) const;
    const KnownEntry *byExecutable(const ProcessTraits &process) const;
    const KnownEntry *byStartupId(const WindowTraits &window, const ProcessTraits &process) const;

    DesktopEntryIndex &_entries;
    EntryTable _table;
};
