// The part of the catalogue that rebuilds and orders its lists, and keeps them on disk.

#include "catalogue/BestMatch.h"
#include "catalogue/ChangeScope.h"
#include "catalogue/OTApp.h"
#include "catalogue/OTAppManager.h"
#include "catalogue/files/StandIns.h"
#include "platform/Desktop.h"
#include "support/NotificationCenter.h"
#include "support/UserDefaults.h"
#include "support/files/StandardPath.h"

using List = CatalogueFiles::List;

void OTAppManager::rebuildAllApps1D()
{
    _allApps1D = flattened(_allApps);
    _listedPaths.reset();
    _desktop.runningApplications().setApplications(pathsFromApps(_allApps1D));
}

void OTAppManager::rebuildUserApps1D()
{
    _favourites.flattenBunches();
}

void OTAppManager::rebuildEverythingSet()
{
    QHash<QString, AppRef> everything;
    for (const AppList &apps : { flattened(_allApps), flattened(userApps()) }) {
        for (const AppRef &app : apps) {
            everything.insert(app->path(), app);
        }
    }
    // What a scan has found is in it by now.
    if (everything != _everythingSet || _isScanOther) {
        const ChangeScope scope(*this, { QStringLiteral("everyApp") });
        _everythingSet = everything;
    }
}

void OTAppManager::rebuildDependentApps()
{
    followStandIns();
    findMissingApps();
    divideAllApps();
}

// What stands in for stored paths may be another since the last scan.
void OTAppManager::followStandIns()
{
    const QSet<QString> stored = pathsOf(shownPaths(List::ExcludedApps));
    if (stored != pathsOf({ pathsFromApps(_excludedApps1D + _missingApps) })) {
        takeStoredExclusions();
    }
    takeStoredUserApps();
    takeStoredColors();
}

PathBunches OTAppManager::shownPaths(List list) const
{
    return StandIns(_desktop.items()).shown(_files.stored(list));
}

void OTAppManager::findMissingApps()
{
    const PathSet found(_allApps1D);
    AppList excluded;
    AppList missing;
    for (const AppRef &app : _excludedApps1D + _missingApps) {
        (found.contains(app) ? excluded : missing).append(app);
    }
    if (excluded == _excludedApps1D) {
        return;
    }
    _missingApps = missing;
    // Favourites among them go, or are back in their places.
    takeStoredUserApps();
    const ChangeScope scope(*this, { QStringLiteral("excludedApps1D") });
    _excludedApps1D = excluded;
    sortArray(_excludedApps1D);
}

void OTAppManager::divideAllApps()
{
    const PathSet excluded(_excludedApps1D);
    BunchList includedApps;
    AppList includedApps1D;
    BunchList excludedApps;
    for (const AppList &bunch : std::as_const(_allApps)) {
        AppList included;
        AppList others;
        for (const AppRef &app : bunch) {
            (excluded.contains(app) ? others : included).append(app);
        }
        if (!included.isEmpty()) {
            includedApps1D += included;
            includedApps.append(included);
        }
        if (!others.isEmpty()) {
            excludedApps.append(others);
        }
    }
    sortArray(includedApps1D);
    if (includedApps == _includedApps && includedApps1D == _includedApps1D
        && excludedApps == _excludedApps && !isAnnouncementDue()) {
        return;
    }
    const ChangeScope scope(*this,
        { QStringLiteral("includedApps"), QStringLiteral("includedApps1D"),
            QStringLiteral("excludedApps") });
    _includedApps = includedApps;
    _includedApps1D = includedApps1D;
    _excludedApps = excludedApps;
}

SortOrder OTAppManager::sortOrder() const
{
    return sortOrderFromPreference(
        UserDefaults::standard().integerForKey(QStringLiteral("groupContentsSortOrder")));
}

bool OTAppManager::sortsRunningByLaunchOrder()
{
    return UserDefaults::standard().boolForKey(QStringLiteral("sortRunningByLaunchOrder"));
}

void OTAppManager::sortArray(AppList &array)
{
    const bool isInLaunchOrder = &array == &_runningApps && sortsRunningByLaunchOrder();
    if (!isInLaunchOrder && &array != &_favourites.flat()) {
        sortApps(array, sortOrder());
    }
}

void OTAppManager::sortAllApps()
{
    sortGroup(_allApps, _allApps1D, { QStringLiteral("allApps"), QStringLiteral("allApps1D") });
}

void OTAppManager::sortGroup(BunchList &bunches, AppList &flat, const QStringList &keys)
{
    BunchList sortedBunches = bunches;
    for (AppList &bunch : sortedBunches) {
        sortArray(bunch);
    }
    AppList sortedFlat = flat;
    sortArray(sortedFlat);
    if (sortedBunches != bunches || sortedFlat != flat || isAnnouncementDue()) {
        const ChangeScope scope(*this, keys);
        bunches = sortedBunches;
        flat = sortedFlat;
    }
}

void OTAppManager::sortAllArrays()
{
    sortAllApps();
    sortGroup(_includedApps, _includedApps1D,
        { QStringLiteral("includedApps"), QStringLiteral("includedApps1D") });
    sortGroup(_excludedApps, _excludedApps1D,
        { QStringLiteral("excludedApps"), QStringLiteral("excludedApps1D") });
    AppList running = _runningApps;
    sortApps(running, sortOrder());
    if (!sortsRunningByLaunchOrder() && running != _runningApps) {
        const ChangeScope scope(*this, { QStringLiteral("runningApps") });
        _runningApps = running;
    }
}

void OTAppManager::readAllAppsFromDisk()
{
    // As the exclusions, which would be missing otherwise.
    const PathBunches stored = StandIns(_desktop.items()).replaced(_files.readAllApps());
    if (!stored.isEmpty()) {
        _isScanOther = true;
        _allApps = appArraysFromPathArrays(stored);
        rebuildAllApps1D();
        _newApplications.setLastFound(pathsFromApps(_allApps1D));
    }
}

void OTAppManager::readExcludedApps1DFromDisk()
{
    _files.readExclusions();
    takeStoredExclusions();
}

void OTAppManager::readUserAppsFromDisk()
{
    _files.readFavourites();
    takeStoredUserApps();
}

// The exclusions as their file has them. What is missing among them is found out afterwards.
void OTAppManager::takeStoredExclusions()
{
    _files.takeOutsideChange(List::ExcludedApps);
    const AppList stored = appsFromPaths(flattened(shownPaths(List::ExcludedApps)));
    if (haveSameApps(stored, _excludedApps1D + _missingApps)) {
        return;
    }
    const ChangeScope scope(*this, { QStringLiteral("excludedApps1D") });
    _missingApps.clear();
    _excludedApps1D = stored;
    sortArray(_excludedApps1D);
}

// The favourites as their files have them, less what is excluded and missing.
void OTAppManager::takeStoredUserApps()
{
    _files.takeOutsideChange(List::UserApps);
    _files.takeOutsideChange(List::UserApps1D);
    Favourites stored;
    stored.setBunches(appArraysFromPathArrays(shownPaths(List::UserApps)));
    stored.setFlat(appsFromPaths(flattened(shownPaths(List::UserApps1D))));
    stored.removeAppsKeepingBunches(PathSet(_missingApps));
    if (stored != _favourites) {
        const ChangeScope scope(
            *this, { QStringLiteral("userApps"), QStringLiteral("userApps1D") });
        _favourites = stored;
    }
}

void OTAppManager::takeOverFiles()
{
    const bool areFavouritesChanged =
        _files.isChangedOutside(List::UserApps) || _files.isChangedOutside(List::UserApps1D);
    if (_files.isChangedOutside(List::ExcludedApps)) {
        takeStoredExclusions();
        rebuildDependentApps();
    }
    if (areFavouritesChanged) {
        takeStoredUserApps();
        loadIconsForApps(AppArray(flattened(userApps())));
    }
    if (_files.takeOutsideChangeOfColors()) {
        takeStoredColors();
        sortIconColorTimerFire();
    }
}

void OTAppManager::writeExcludedApps(const AppList &changed)
{
    store({ { List::ExcludedApps, { pathsFromApps(_excludedApps1D) },
        pathsOf({ pathsFromApps(changed) }) } });
    if (_files.isChangedOutside(List::ExcludedApps)) {
        takeStoredExclusions();
    }
}

void OTAppManager::writeUserApps(const QStringList &changed, const QStringList &changedInFlatOrder)
{
    const QSet<QString> paths = pathsOf({ changed });
    const QSet<QString> flatPaths = paths + pathsOf({ changedInFlatOrder });
    store({ { List::UserApps, pathArraysFromAppArrays(userApps()), paths },
        { List::UserApps1D, { pathsFromApps(userApps1D()) }, flatPaths } });
    if (_files.isChangedOutside(List::UserApps) || _files.isChangedOutside(List::UserApps1D)) {
        takeStoredUserApps();
    }
}

void OTAppManager::store(const QList<CatalogueFiles::Change> &changes)
{
    const StandIns standIns(_desktop.items());
    QList<CatalogueFiles::Change> stored;
    for (const CatalogueFiles::Change &change : changes) {
        stored.append(standIns.toStore(change, _files.stored(change.list)));
    }
    _files.store(stored);
}

void OTAppManager::writeAllApps()
{
    _files.writeAllApps(pathArraysFromAppArrays(_allApps));
}

void OTAppManager::locateUserApps()
{
    AppList replaced;
    {
        const ChangeScope scope(
            *this, { QStringLiteral("userApps"), QStringLiteral("userApps1D") });
        AppList candidates = _allApps1D;
        removeFromList(candidates, PathSet(userApps1D()));
        for (qsizetype bunch = 0; bunch < userApps().size(); ++bunch) {
            for (qsizetype index = 0; index < userApps()[bunch].size(); ++index) {
                const AppRef lost = userApps()[bunch][index];
                const AppRef found =
                    lost->isPathValid() ? nullptr : bestMatchForApp(lost, AppArray(candidates));
                if (found) {
                    _favourites.replaceApp(bunch, index, found);
                    removeFromList(candidates, PathSet(AppList { found }));
                    replaced += { lost, found };
                }
            }
        }
        rebuildUserApps1D();
    }
    writeUserApps(pathsFromApps(replaced), pathsFromApps(userApps1D()));
}
