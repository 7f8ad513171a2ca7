#include "platform/freedesktop/windows/WindowMatcher.h"

#include "platform/freedesktop/entries/DesktopEntryIndex.h"
#include "platform/freedesktop/entries/LaunchedEntries.h"
#include "support/files/StandardPath.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#include <algorithm>
#include <tuple>

namespace {

const QString ending = QStringLiteral(".desktop");

QString withoutEnding(const QString &id)
{
    return id.endsWith(ending) ? id.chopped(ending.size()) : id;
}

QString pathOf(const KnownEntry *known)
{
    return known != nullptr ? known->path : QString();
}

// Whether the entry starts the file, whose links are resolved.
bool runs(const KnownEntry &known, const QString &file)
{
    const QString &program = known.entry->program;
    const QString found =
        QDir::isAbsolutePath(program) ? program : QStandardPaths::findExecutable(program);
    return !found.isEmpty() && QFileInfo(found).canonicalFilePath() == file;
}

// The one that stands alone, else the one of those that are shown; null when that is not one.
const KnownEntry *onlyOne(EntryMatches matches)
{
    if (matches.size() > 1) {
        matches.removeIf([](const KnownEntry *known) { return !known->isShown; });
    }
    return matches.size() == 1 ? matches.constFirst() : nullptr;
}

// Entries that declare the same class are variants of one program, so any of them is right in a
// way.
const KnownEntry *bestOf(
    const EntryMatches &matches, const WindowTraits &window, const ProcessTraits &process)
{
    const auto rank = [&](const KnownEntry *known) {
        const QString &file = process.script.isEmpty() ? process.executable : process.script;
        const bool isRun = matches.size() > 1 && !file.isEmpty() && runs(*known, file);
        const bool isNamed = known->id.compare(window.className, Qt::CaseInsensitive) == 0;
        return std::tuple(isRun, known->isShown, isNamed, !known->entry->hasArguments);
    };
    const auto best = std::max_element(matches.begin(), matches.end(),
        [&](const KnownEntry *one, const KnownEntry *other) { return rank(one) < rank(other); });
    return best != matches.end() ? *best : nullptr;
}

} // namespace

WindowMatcher::WindowMatcher(
    DesktopEntryIndex &entries, const QStringList &dataFolders, const QStringList &desktops)
    : _entries(entries)
    , _table(entries, dataFolders, desktops)
{ }

QString WindowMatcher::bundleOf(const WindowTraits &window, const ProcessTraits &process) const
{
    if (!process.flatpakId.isEmpty()) {
        return pathOf(inSandbox(_table.byFlatpakId(process.flatpakId), process.flatpakId, window));
    }
    if (!process.snapName.isEmpty()) {
        return pathOf(inSandbox(_table.bySnapName(process.snapName),
            process.snapName + QLatin1Char('_') + process.snapName, window));
    }
    KnownEntry outside;
    const KnownEntry *const launched = launchedEntry(process, outside);
    if (launched != nullptr && launched->entry->isTerminal) {
        return launched->path;
    }
    if (const KnownEntry *const named = namedByToolkit(window)) {
        return named->path;
    }
    if (const KnownEntry *const known = byClass(window, process, launched)) {
        return known->path;
    }
    if (!process.bundle.isEmpty()) {
        return standardizedPath(process.bundle);
    }
    if (launched != nullptr) {
        return launched->path;
    }
    const KnownEntry *known = byExecutable(process);
    if (known == nullptr) {
        known = byStartupId(window, process);
    }
    return pathOf(known != nullptr ? known : _table.byId(process.unitEntryId));
}

// An entry that lies outside the usual folders is nevertheless the one that was started.
const KnownEntry *WindowMatcher::launchedEntry(
    const ProcessTraits &process, KnownEntry &outside) const
{
    const QString path = standardizedPath(process.launchedEntry);
    if (const KnownEntry *const known = _table.byPath(path)) {
        return known;
    }
    outside.path = path;
    outside.entry = path.isEmpty() ? nullptr : _entries.entryAt(path);
    const bool isThere = outside.entry && outside.entry->kind == DesktopEntry::Kind::Application;
    return isThere ? &outside : nullptr;
}

QString WindowMatcher::pathOfId(const QString &id) const
{
    return pathOf(_table.byId(id));
}

// A suite in one sandbox has an entry for each of its programs.
const KnownEntry *WindowMatcher::inSandbox(
    const EntryMatches &members, const QString &name, const WindowTraits &window) const
{
    for (const QString &windowName : { window.className, window.instanceName }) {
        for (const EntryMatches &matches :
            { _table.byDeclaredClass(windowName), _table.byFoldedId(windowName) }) {
            for (const KnownEntry *known : matches) {
                if (members.contains(known)) {
                    return known;
                }
            }
        }
    }
    const KnownEntry *const main = _table.byId(name);
    return main != nullptr ? main : onlyOne(members);
}

const KnownEntry *WindowMatcher::namedByToolkit(const WindowTraits &window) const
{
    const QString file = window.kdeDesktopFile;
    const KnownEntry *known = QDir::isAbsolutePath(file) ? _table.byPath(standardizedPath(file))
                                                         : _table.byId(withoutEnding(file));
    return known != nullptr ? known : _table.byId(window.gtkApplicationId);
}

const KnownEntry *WindowMatcher::byClass(
    const WindowTraits &window, const ProcessTraits &process, const KnownEntry *launched) const
{
    // A browser shows its web applications under its own class, each with an instance name.
    for (const QString &name : { window.instanceName, window.className }) {
        const EntryMatches matches = _table.byDeclaredClass(name);
        if (!matches.isEmpty()) {
            return matches.contains(launched) ? launched : bestOf(matches, window, process);
        }
    }
    for (const QString &name : { window.className, window.instanceName }) {
        const QString id = QString(name).replace(QLatin1Char(' '), QLatin1Char('-'));
        const EntryMatches matches = _table.byFoldedId(id);
        const bool isOfThatProgram = launched != nullptr
            && std::any_of(matches.begin(), matches.end(), [launched](const KnownEntry *known) {
                   return known->entry->program == launched->entry->program;
               });
        if (isOfThatProgram) {
            return launched;
        }
        if (const KnownEntry *const known = byId(id, process)) {
            return known;
        }
    }
    return nullptr;
}

const KnownEntry *WindowMatcher::byId(const QString &name, const ProcessTraits &process) const
{
    const EntryMatches matches = _table.byFoldedId(name);
    const KnownEntry *const known = onlyOne(matches);
    if (known == nullptr || known->id.compare(name, Qt::CaseInsensitive) == 0) {
        return known;
    }
    // An executable may lie elsewhere than the program that leads to it, but is called like it.
    const auto fileName = [](const QString &path) {
        return path.section(QLatin1Char('/'), -1).toCaseFolded();
    };
    const QString &file = process.script.isEmpty() ? process.executable : process.script;
    const QString program = fileName(known->entry->program);
    const QString running = fileName(file);
    return running.isEmpty() || running.contains(program) || program.contains(running) ? known
                                                                                       : nullptr;
}

// An entry for the terminal is not meant: its program has no windows. Of several that start the
// program, the one that starts it plainly.
const KnownEntry *WindowMatcher::byExecutable(const ProcessTraits &process) const
{
    const QString &file = process.script.isEmpty() ? process.executable : process.script;
    EntryMatches matches = _table.byProgramName(file.section(QLatin1Char('/'), -1));
    matches.removeIf([&file](const KnownEntry *known) {
        return known->entry->isTerminal || !runs(*known, file);
    });
    if (matches.size() > 1) {
        matches.removeIf([](const KnownEntry *known) { return known->entry->hasArguments; });
    }
    return onlyOne(matches);
}

// Whatever is started from a shell inherits the identifier too; so the program must be gone that it
// was given to.
const KnownEntry *WindowMatcher::byStartupId(
    const WindowTraits &window, const ProcessTraits &process) const
{
    const QString path = standardizedPath(LaunchedEntries::entryOf(window.startupId));
    return !path.isEmpty() && path == standardizedPath(process.orphanedEntry) ? _table.byPath(path)
                                                                              : nullptr;
}
