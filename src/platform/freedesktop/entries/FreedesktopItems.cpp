#include "platform/freedesktop/entries/FreedesktopItems.h"

#include "platform/freedesktop/entries/BundleFolder.h"
#include "platform/freedesktop/entries/DesktopEntryIndex.h"
#include "platform/freedesktop/entries/EntryWords.h"

#include <QFile>

#include <sys/stat.h>
#include <utility>

namespace {

bool isEntryName(const QString &path)
{
    return path.endsWith(QLatin1String(".desktop"));
}

} // namespace

FreedesktopItems::FreedesktopItems(
    DesktopEntryIndex &entries, const QStringList &dataFolders, QStringList currentDesktops)
    : _entries(entries)
    , _currentDesktops(std::move(currentDesktops))
    , _ids(dataFolders)
{ }

void FreedesktopItems::willScan()
{
    _entries.willScan();
    _ids.forget();
    _hiddenNames.forget();
    _programs.forget();
}

void FreedesktopItems::lookAgainAt(const QStringList &paths)
{
    _entries.lookAgainAt(paths);
    _ids.forget();
    _hiddenNames.forget();
    _programs.forget();
}

ItemFlags FreedesktopItems::flagsOf(const QString &path) const
{
    struct stat status = {};
    if (::lstat(QFile::encodeName(path).constData(), &status) != 0) {
        return {};
    }
    ItemFlags flags;
    if (S_ISDIR(status.st_mode)) {
        flags = flagsOfFolder(path);
    } else if (S_ISLNK(status.st_mode)) {
        flags = flagsOfLink(path);
    } else if (S_ISREG(status.st_mode) && isEntryName(path)) {
        flags = flagsOfEntry(path);
    } else if (S_ISREG(status.st_mode)) {
        flags.isApplication = Programs::isAppImage(path);
    }
    flags.isInvisible = flags.isInvisible || isInvisibleName(path);
    return flags;
}

bool FreedesktopItems::isInvisibleName(const QString &path) const
{
    const qsizetype slash = path.lastIndexOf(QLatin1Char('/'));
    const QString name = path.mid(slash + 1);
    return name.startsWith(QLatin1Char('.')) || _hiddenNames.contains(path.left(slash), name);
}

ItemFlags FreedesktopItems::flagsOfFolder(const QString &path) const
{
    ItemFlags flags;
    flags.isContainer = true;
    flags.isPackage = BundleFolder::isPackageName(path);
    flags.isApplication = flags.isPackage && BundleFolder::isApplication(path);
    flags.isClassicApp = flags.isApplication && BundleFolder::executableOf(path).isEmpty();
    return flags;
}

// Package systems export their entries as links, so a link to an application is as good as the
// application.
ItemFlags FreedesktopItems::flagsOfLink(const QString &path) const
{
    ItemFlags flags = isEntryName(path) ? flagsOfEntry(path) : ItemFlags();
    if (!flags.isApplication) {
        flags = {};
        flags.isAlias = true;
    }
    return flags;
}

ItemFlags FreedesktopItems::flagsOfEntry(const QString &path) const
{
    const std::shared_ptr<const DesktopEntry> entry = _entries.entryAt(path);
    ItemFlags flags;
    if (!entry || entry->kind == DesktopEntry::Kind::Broken) {
        return flags;
    }
    flags.isApplication = entry->kind == DesktopEntry::Kind::Application;
    flags.isInvisible = entry->isHidden || entry->isNoDisplay || !entry->isShownIn(_currentDesktops)
        || _ids.isShadowed(path);
    flags.isClassicApp = flags.isApplication && !canRun(*entry);
    return flags;
}

// What is started over the bus needs no program of its own.
bool FreedesktopItems::canRun(const DesktopEntry &entry) const
{
    return (entry.tryExec.isEmpty() || _programs.isKnown(entry.tryExec))
        && (entry.program.isEmpty() || _programs.isKnown(entry.program));
}

std::shared_ptr<const DesktopEntry> FreedesktopItems::applicationAt(const QString &path) const
{
    const std::shared_ptr<const DesktopEntry> entry =
        isEntryName(path) ? _entries.entryAt(path) : nullptr;
    return entry && entry->kind == DesktopEntry::Kind::Application ? entry : nullptr;
}

QString FreedesktopItems::displayName(const QString &path) const
{
    const std::shared_ptr<const DesktopEntry> entry = applicationAt(path);
    return entry && !entry->name.isEmpty() ? entry->name : nameOf(path);
}

std::optional<QString> FreedesktopItems::genericNameOf(const QString &path) const
{
    const std::shared_ptr<const DesktopEntry> entry = applicationAt(path);
    return entry ? std::optional(entry->genericName) : std::nullopt;
}

ItemWords FreedesktopItems::wordsOf(const QString &path) const
{
    return isEntryName(path) ? EntryWords::at(path, _entries.languages()) : ItemWords();
}

// An entry of the same ID. One that only deletes or damages the other takes no place.
QString FreedesktopItems::standInFor(const QString &path) const
{
    if (!isEntryName(path)) {
        return path;
    }
    const QString counting = _ids.pathThatCounts(path);
    const std::shared_ptr<const DesktopEntry> entry =
        counting == path ? nullptr : applicationAt(counting);
    return entry && !entry->isHidden ? counting : path;
}

QString FreedesktopItems::refusal(const QString &path) const
{
    if (!isEntryName(path)) {
        return {};
    }
    const DesktopEntry entry = DesktopEntry::fromFile(path, {});
    switch (entry.kind) {
    case DesktopEntry::Kind::Application:
        break;
    case DesktopEntry::Kind::Other:
        return QStringLiteral("not an application");
    case DesktopEntry::Kind::Broken:
        return entry.problem;
    }
    return {};
}

QString FreedesktopItems::iconNameOf(const QString &bundlePath) const
{
    if (isEntryName(bundlePath)) {
        if (const std::shared_ptr<const DesktopEntry> entry = _entries.entryAt(bundlePath)) {
            return entry->icon;
        }
    }
    return BundleFolder::iconOf(bundlePath, _entries.languages());
}
