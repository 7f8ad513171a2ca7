// The part of the catalogue that rebuilds and orders its lists, and keeps them on disk.

#include "catalogue/BestMatch.h"
#include "catalogue/ChangeScope.h"
#include "catalogue/OTApp.h"
#include "catalogue/OTAppManager.h"
#include "support/NotificationCenter.h"
#include "support/StandardPath.h"
#include "support/UserDefaults.h"

namespace {

QString allFile()
{
    return QStringLiteral("AllApplications.plist");
}
QString excludedFile()
{
    return QStringLiteral("ExcludedApplications.plist");
}
QString userFile()
{
    return QStringLiteral("UserApplications.plist");
}
QString user1DFile()
{
    return QStringLiteral("UserApplications1D.plist");
}

} // namespace

void OTAppManager::rebuildAllApps1D()
{
    _allApps1D = flattened(_allApps);
}

void OTAppManager::rebuildUserApps1D()
{
    _favourites.flattenBunches();
}

void OTAppManager::rebuildEverythingSet()
{
    const ChangeScope scope(*this, { QStringLiteral("everyApp") });
    _everythingSet.clear();
    for (const AppList &apps : { flattened(_allApps), flattened(userApps()) }) {
        for (const AppRef &app : apps) {
            _everythingSet.insert(app->path(), app);
        }
    }
}

void OTAppManager::rebuildDependentApps()
{
    findMissingApps();
    divideAllApps();
}

void OTAppManager::findMissingApps()
{
    const PathSet found(_allApps1D);
    _missingApps.clear();
    for (const AppRef &app : std::as_const(_excludedApps1D)) {
        if (!found.contains(app)) {
            _missingApps.append(app);
        }
    }
    if (_missingApps.isEmpty()) {
        return;
    }
    const PathSet missing(_missingApps);
    Favourites remaining = _favourites;
    if (remaining.removeAppsKeepingBunches(missing)) {
        const ChangeScope scope(
            *this, { QStringLiteral("userApps"), QStringLiteral("userApps1D") });
        _favourites = remaining;
    }
    // The file keeps them: a disk that is not mounted today may be there tomorrow.
    const ChangeScope scope(*this, { QStringLiteral("excludedApps1D") });
    removeFromList(_excludedApps1D, missing);
    sortArray(_excludedApps1D);
}

void OTAppManager::divideAllApps()
{
    const ChangeScope scope(*this,
        { QStringLiteral("includedApps"), QStringLiteral("includedApps1D"),
            QStringLiteral("excludedApps") });
    const PathSet excluded(_excludedApps1D);
    _includedApps.clear();
    _includedApps1D.clear();
    _excludedApps.clear();
    for (const AppList &bunch : std::as_const(_allApps)) {
        AppList included;
        AppList others;
        for (const AppRef &app : bunch) {
            (excluded.contains(app) ? others : included).append(app);
        }
        if (!included.isEmpty()) {
            _includedApps1D += included;
            _includedApps.append(included);
        }
        if (!others.isEmpty()) {
            _excludedApps.append(others);
        }
    }
    sortArray(_includedApps1D);
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
    const ChangeScope scope(*this, { QStringLiteral("allApps"), QStringLiteral("allApps1D") });
    for (AppList &bunch : _allApps) {
        sortArray(bunch);
    }
    sortArray(_allApps1D);
}

void OTAppManager::sortAllArrays()
{
    sortAllApps();
    const auto sortGroup = [this](BunchList &bunches, AppList &flat, const QStringList &keys) {
        const ChangeScope scope(*this, keys);
        for (AppList &bunch : bunches) {
            sortArray(bunch);
        }
        sortArray(flat);
    };
    sortGroup(_includedApps, _includedApps1D,
        { QStringLiteral("includedApps"), QStringLiteral("includedApps1D") });
    sortGroup(_excludedApps, _excludedApps1D,
        { QStringLiteral("excludedApps"), QStringLiteral("excludedApps1D") });
    if (!sortsRunningByLaunchOrder()) {
        const ChangeScope scope(*this, { QStringLiteral("runningApps") });
        sortArray(_runningApps);
    }
}

void OTAppManager::readAllAppsFromDisk()
{
    const auto stored = _files.readPathArrays(
        allFile(), CatalogueFiles::Domain::User, CatalogueFiles::Shape::Bunched);
    if (stored && !stored->bunched.isEmpty()) {
        _allApps = appArraysFromPathArrays(stored->bunched);
        rebuildAllApps1D();
    }
}

void OTAppManager::readExcludedApps1DFromDisk()
{
    QStringList paths;
    for (const auto domain : { CatalogueFiles::Domain::User, CatalogueFiles::Domain::Local }) {
        const auto stored =
            _files.readPathArrays(excludedFile(), domain, CatalogueFiles::Shape::Flat);
        const QStringList found = stored ? stored->flat : QStringList();
        for (const QString &path : found) {
            paths.append(standardizedPath(path));
        }
    }
    paths.removeDuplicates();
    if (!paths.isEmpty()) {
        const ChangeScope scope(*this, { QStringLiteral("excludedApps1D") });
        _excludedApps1D = appsFromPaths(paths);
        sortArray(_excludedApps1D);
    }
}

void OTAppManager::readUserAppsFromDisk()
{
    const auto bunches = _files.readPathArrays(
        userFile(), CatalogueFiles::Domain::User, CatalogueFiles::Shape::Bunched);
    // Lost bunches must not take the flat order with them: the next move would overwrite it.
    const bool areBunchesLost = !bunches && _files.wasDamaged(userFile());
    if (!bunches && !areBunchesLost) {
        return;
    }
    const ChangeScope scope(*this, { QStringLiteral("userApps"), QStringLiteral("userApps1D") });
    if (bunches && !bunches->bunched.isEmpty()) {
        _favourites.setBunches(appArraysFromPathArrays(bunches->bunched));
    }
    const auto flat = _files.readPathArrays(
        user1DFile(), CatalogueFiles::Domain::User, CatalogueFiles::Shape::Flat);
    if (!flat || flat->flat.isEmpty()) {
        rebuildUserApps1D();
        return;
    }
    _favourites.setFlat(appsFromPaths(flat->flat));
    if (areBunchesLost) {
        _favourites.setBunches({ userApps1D() });
    }
}

void OTAppManager::writeExcludedApps()
{
    if (!_files.writePaths(pathsFromApps(_excludedApps1D), excludedFile())) {
        Q_EMIT NotificationCenter::defaultCenter().N_UserMessage(
            tr("What is excluded could not be saved, and lasts only until Ortu ends."));
    }
}

void OTAppManager::writeUserApps()
{
    const bool areBunchesKept =
        _files.writePathArrays(pathArraysFromAppArrays(userApps()), userFile());
    const bool isOrderKept = _files.writePaths(pathsFromApps(userApps1D()), user1DFile());
    if (!areBunchesKept || !isOrderKept) {
        Q_EMIT NotificationCenter::defaultCenter().N_UserMessage(
            tr("The favourites could not be saved, and last only until Ortu ends."));
    }
}

void OTAppManager::writeAllApps()
{
    _files.writePathArrays(pathArraysFromAppArrays(_allApps), allFile());
}

void OTAppManager::locateUserApps()
{
    const ChangeScope scope(*this, { QStringLiteral("userApps"), QStringLiteral("userApps1D") });
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
            }
        }
    }
    rebuildUserApps1D();
    writeUserApps();
}
