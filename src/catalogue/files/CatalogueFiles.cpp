#include "catalogue/files/CatalogueFiles.h"

#include "catalogue/files/Log.h"
#include "support/NotificationCenter.h"
#include "support/Translations.h"
#include "support/files/FileLock.h"
#include "support/files/FileWatch.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocale>

#include <algorithm>
#include <functional>

using PathFile::Shape;
using PropertyList::State;

namespace {

QString folderIn(const SearchPaths &searchPaths, SearchPaths::Domain domain)
{
    const QString base = searchPaths.applicationSupportFolder(domain);
    return (base.isEmpty() ? QDir::tempPath() : base) + QStringLiteral("/Ortu");
}

QString userFile(const SearchPaths &searchPaths, const char *name)
{
    return CatalogueFiles::userFolder(searchPaths) + QLatin1Char('/') + QLatin1String(name);
}

QString allAppsFile(const SearchPaths &searchPaths)
{
    return userFile(searchPaths, "AllApplications.plist");
}

void sayUnusable(const QString &path, const QString &reason)
{
    qCWarning(lcCatalogue, "cannot use %s: %s", qUtf8Printable(path), qUtf8Printable(reason));
}

void sayNotLocked(const QString &folder, const QString &reason)
{
    qCWarning(lcCatalogue, "cannot lock %s: %s", qUtf8Printable(folder), qUtf8Printable(reason));
}

} // namespace

CatalogueFiles::CatalogueFiles(const SearchPaths &searchPaths, Writing writing)
    : _searchPaths(searchPaths)
    , _writing(writing)
    , _lists {
        StoredPaths(userFile(searchPaths, "ExcludedApplications.plist"), Shape::Flat, writing),
        StoredPaths(userFile(searchPaths, "UserApplications.plist"), Shape::Bunched, writing),
        StoredPaths(userFile(searchPaths, "UserApplications1D.plist"), Shape::Flat, writing),
    }
    , _colors(userFile(searchPaths, "ColorCorrections.plist"), writing)
{
    if (_writing == Writing::Never) {
        return;
    }
    QStringList paths;
    for (const StoredPaths &list : _lists) {
        paths.append(list.path());
    }
    paths.append(_colors.path());
    FileReplacement::removeStrays(paths + QStringList(allAppsFile(_searchPaths)));
    if (QCoreApplication::instance()) {
        _watch = std::make_unique<FileWatch>(paths);
        connect(_watch.get(), &FileWatch::changed, this, &CatalogueFiles::readAgain);
    }
}

CatalogueFiles::~CatalogueFiles()
{
    writeAgain();
}

QString CatalogueFiles::userFolder(const SearchPaths &searchPaths)
{
    return folderIn(searchPaths, SearchPaths::Domain::User);
}

QString CatalogueFiles::userApplicationSupportFolder() const
{
    return userFolder(_searchPaths);
}

QString CatalogueFiles::localApplicationSupportFolder() const
{
    return folderIn(_searchPaths, SearchPaths::Domain::Local);
}

PathBunches CatalogueFiles::readAllApps()
{
    const QString path = allAppsFile(_searchPaths);
    const PathFile::Document document = PathFile::read(path, Shape::Bunched);
    if (document.state == State::Read) {
        return document.paths;
    }
    if (document.state == State::Damaged && _writing == Writing::Allowed) {
        PropertyList::setAside(path, document.error);
    } else if (document.state == State::Damaged) {
        sayUnusable(path, document.error);
    }
    return {};
}

void CatalogueFiles::writeAllApps(const PathBunches &bunches)
{
    if (_writing == Writing::Never) {
        return;
    }
    const QString folder = userApplicationSupportFolder();
    QDir().mkpath(folder);
    FileLock lock(folder);
    if (!lock.lock()) {
        sayNotLocked(folder, lock.error());
        return;
    }
    const QVariant list = PathFile::propertyList(bunches, Shape::Bunched);
    QFile stored(allAppsFile(_searchPaths));
    const bool isStored =
        stored.open(QIODevice::ReadOnly) && stored.readAll() == PropertyList::toXml(list);
    if (!isStored) {
        PropertyList::writeFile(stored.fileName(), list);
    }
}

void CatalogueFiles::readExclusions()
{
    StoredPaths &user = at(List::ExcludedApps);
    user.read();
    if (!user.isKnown() && restoreFormer(List::ExcludedApps)) {
        sayRestored(user.path(), tr("The list of what is excluded was lost."));
    }
    const QString path =
        localApplicationSupportFolder() + QStringLiteral("/ExcludedApplications.plist");
    const PathFile::Document local = PathFile::read(path, Shape::Flat);
    if (local.state == State::Damaged) {
        sayUnusable(path, local.error);
    }
    user.add(flattened(standardized(local.paths)));
    writeAgain();
}

void CatalogueFiles::readFavourites()
{
    const StoredPaths &bunches = at(List::UserApps);
    const StoredPaths &flat = at(List::UserApps1D);
    at(List::UserApps).read();
    at(List::UserApps1D).read();
    if (!bunches.isKnown() && !flat.isKnown()) {
        const bool isFlatRestored = restoreFormer(List::UserApps1D);
        const bool areBunchesRestored = restoreFormer(List::UserApps);
        if (areBunchesRestored || isFlatRestored) {
            sayRestored((areBunchesRestored ? bunches : flat).path(),
                tr("The list of favourites was lost."));
        }
    }
    if (!bunches.paths().isEmpty() && flat.paths().isEmpty()) {
        restoreOrder(List::UserApps1D, List::UserApps);
    } else if (!flat.paths().isEmpty() && !bunches.isKnown()) {
        restoreOrder(List::UserApps, List::UserApps1D);
    } else if (!bunches.paths().isEmpty()) {
        // A file of which only a part could be read is to be written.
        bunches.isUnwritten() ? completeBunches() : completeFlatOrder();
    }
    writeAgain();
}

bool CatalogueFiles::restoreFormer(List list)
{
    const PathBunches former = at(list).former();
    if (former.isEmpty()) {
        return false;
    }
    at(list).restore(former);
    return true;
}

void CatalogueFiles::sayRestored(const QString &path, const QString &whatIsLost)
{
    const QString former = FileReplacement::formerPath(path);
    qCWarning(lcCatalogue, "%s stands in for the file that is lost", qUtf8Printable(former));
    const QString day = QLocale().toString(QFileInfo(former).lastModified().date());
    Q_EMIT NotificationCenter::defaultCenter().N_UserMessage(
        whatIsLost + QLatin1Char(' ') + tr("It is again as it was on %1.").arg(day));
}

// Which applications there are is told by the other order, where each of them was by what the lost
// one was before.
void CatalogueFiles::restoreOrder(List lost, List other)
{
    const PathBunches now { flattened(at(other).paths()) };
    const PathBunches former = at(lost).former();
    const QSet<QString> before = pathsOf(former);
    const QSet<QString> wanted = pathsOf(now);
    at(lost).restore(merged(former, now, (before - wanted) + (wanted - before)));
}

// New favourites stand at the end of the flat order.
void CatalogueFiles::completeFlatOrder()
{
    StoredPaths &flat = at(List::UserApps1D);
    const QStringList favourites = flattened(at(List::UserApps).paths());
    const QSet<QString> wanted = pathsOf({ favourites });
    const QSet<QString> present = pathsOf(flat.paths());
    const QSet<QString> changed = (wanted - present) + (present - wanted);
    if (changed.isEmpty()) {
        return;
    }
    QStringList order = flattened(flat.paths());
    order.removeIf([&](const QString &path) { return !wanted.contains(path); });
    for (const QString &path : favourites) {
        if (!present.contains(path)) {
            order.append(path);
        }
    }
    flat.change({ order }, changed);
}

// What is left out of the bunches stands in one of its own at the end.
void CatalogueFiles::completeBunches()
{
    PathBunches bunches = at(List::UserApps).paths();
    const QSet<QString> present = pathsOf(bunches);
    QStringList missing = flattened(at(List::UserApps1D).paths());
    missing.removeIf([&](const QString &path) { return present.contains(path); });
    if (!missing.isEmpty()) {
        bunches.append(missing);
        at(List::UserApps).change(bunches, QSet<QString>(missing.cbegin(), missing.cend()));
    }
}

void CatalogueFiles::readColors()
{
    _colors.read();
    const StoredColors::Colors former =
        _colors.isKnown() ? StoredColors::Colors() : _colors.former();
    if (!former.isEmpty()) {
        StoredColors::Change change;
        for (auto color = former.cbegin(); color != former.cend(); ++color) {
            change.insert(color.key(), *color);
        }
        _colors.change(change);
        sayRestored(_colors.path(), tr("The list of colours that were chosen for icons was lost."));
    }
    writeAgain();
}

void CatalogueFiles::writeAgain()
{
    if (std::any_of(_lists.begin(), _lists.end(), std::mem_fn(&StoredPaths::isUnwritten))) {
        write();
    }
    if (_colors.isUnwritten()) {
        writeColors();
    }
}

void CatalogueFiles::readAgain()
{
    for (StoredPaths &list : _lists) {
        list.readAgain();
    }
    _colors.readAgain();
    if (_colors.isChangedOutside()
        || std::any_of(_lists.begin(), _lists.end(), std::mem_fn(&StoredPaths::isChangedOutside))) {
        Q_EMIT changedOutside();
    }
}

void CatalogueFiles::store(const QList<Change> &changes)
{
    for (const Change &change : changes) {
        at(change.list).change(change.paths, change.changed);
    }
    write();
}

void CatalogueFiles::write()
{
    if (_writing == Writing::Never) {
        return;
    }
    QString error;
    whileLocked(&error, [&] {
        for (StoredPaths &list : _lists) {
            if (list.isUnwritten()) {
                list.write(&error);
            }
        }
    });
    sayNotKept(tr("Changes of favourites and exclusions are not kept: %1."), error, _isFailureTold);
}

void CatalogueFiles::storeColors(const StoredColors::Change &change)
{
    _colors.change(change);
    writeColors();
}

void CatalogueFiles::writeColors()
{
    if (_writing == Writing::Never) {
        return;
    }
    QString error;
    whileLocked(&error, [&] { _colors.write(&error); });
    sayNotKept(tr("Changes of colours are not kept: %1."), error, _isFailureOfColorsTold);
}

// Once until it can be kept.
void CatalogueFiles::sayNotKept(const QString &what, const QString &error, bool &isTold)
{
    if (!error.isEmpty() && !isTold) {
        Q_EMIT NotificationCenter::defaultCenter().N_UserMessage(
            what.arg(Translations::ofReason(error)));
    }
    isTold = !error.isEmpty();
}

// `error` receives the reason when the folder cannot be locked.
void CatalogueFiles::whileLocked(QString *error, const std::function<void()> &write) const
{
    // Missing folders above it are made too: a new account has no data folder yet, and the
    // favourites of its first day must last. A failure shows in the lock.
    const QString folder = userApplicationSupportFolder();
    QDir().mkpath(folder);
    FileLock lock(folder);
    if (!lock.lock()) {
        *error = lock.error();
        sayNotLocked(folder, *error);
        return;
    }
    write();
}
