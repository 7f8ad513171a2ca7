// The part of the catalogue that fills it: from the folders to scan, and from what runs.

#include "catalogue/ChangeScope.h"
#include "catalogue/OTApp.h"
#include "catalogue/OTAppManager.h"
#include "catalogue/RunningOrder.h"
#include "catalogue/files/FolderWalk.h"
#include "catalogue/files/ScanFolders.h"
#include "platform/Desktop.h"
#include "support/NotificationCenter.h"
#include "support/UserDefaults.h"

#include <algorithm>

void OTAppManager::rescanAllAppsPrioritizingGroup(int group)
{
    const bool isColdStart = _allApps.isEmpty();
    if (isColdStart) {
        readAllAppsFromDisk();
    }
    if (!isColdStart || _allApps.isEmpty()) {
        scanSearchFoldersForAllApps();
    }
    sortAllApps();
    readExcludedApps1DFromDisk();
    readUserAppsFromDisk();
    readColorsFromDisk();
    rebuildDependentApps();
    runningAppsListDidChange();
    rebuildEverythingSet();
    scanDidEnd();
    loadAllIconsPrioritizingGroup(group == -1 ? AllGroup : group);
    if (isColdStart) {
        // Icons that were at hand have their colours with them: the first frame is in order.
        sortIconColorTimerFire();
    }
}

QStringList OTAppManager::pathsToScan() const
{
    return ScanFolders::pathsToScan(UserDefaults::standard());
}

void OTAppManager::scanSearchFoldersForAllApps()
{
    const QStringList roots = pathsToScan();
    _desktop.items().willScan();
    FolderWalk walk(_desktop.items(), roots,
        UserDefaults::standard().integerForKey(QStringLiteral("maxFolderRecursionDepth")));
    BunchList found;
    for (int i = 0; i < roots.size(); ++i) {
        showProgressStep(i + 1, int(roots.size()), roots[i]);
        AppList bunch = appsFromPaths(walk.pathsUnder(roots[i]));
        // Sorting comes before the icons.
        for (const AppRef &app : std::as_const(bunch)) {
            _areNamesChanged = app->renewDisplayName() || _areNamesChanged;
        }
        if (!bunch.isEmpty()) {
            found.append(bunch);
        }
    }
    setAllApps(found);
    _newApplications.scanned(pathsFromApps(_allApps1D), { roots, walk.maxRecursionDepth() });
    _newApplications.remove(pathsFromApps(_runningApps));
    writeAllApps();
    showProgressStep(0, 0, {});
}

void OTAppManager::setAllApps(const BunchList &found)
{
    const auto bunchSets = [](const BunchList &bunches) {
        QList<QSet<AppRef>> sets;
        for (const AppList &bunch : bunches) {
            sets.append(QSet<AppRef>(bunch.begin(), bunch.end()));
        }
        return sets;
    };
    if (bunchSets(found) == bunchSets(_allApps)) {
        return;
    }
    // Those that sort as equal keep their places, whatever order the file system gives.
    QHash<AppRef, qsizetype> places;
    for (const AppRef &app : flattened(_allApps)) {
        places.insert(app, places.size());
    }
    const auto isBefore = [&places](const AppRef &one, const AppRef &other) {
        return places.value(one, places.size()) < places.value(other, places.size());
    };
    _isScanOther = true;
    _allApps = found;
    for (AppList &bunch : _allApps) {
        std::stable_sort(bunch.begin(), bunch.end(), isBefore);
        sortArray(bunch);
    }
    rebuildAllApps1D();
}

// The favourites have not been divided anew, but may be called otherwise.
void OTAppManager::scanDidEnd()
{
    _isScanOther = false;
    if (std::exchange(_areNamesChanged, false)) {
        const ChangeScope scope(
            *this, { QStringLiteral("userApps"), QStringLiteral("userApps1D") });
    }
}

void OTAppManager::showProgressStep(int step, int count, const QString &label)
{
    const bool isBusy = step != 0 && count != 0;
    if (isBusy != _isBusyScanning) {
        _isBusyScanning = isBusy;
        Q_EMIT isBusyScanningChanged(isBusy);
    }
    Q_EMIT NotificationCenter::defaultCenter().N_ShowProgressStep(step, count, label);
}

void OTAppManager::fullScan()
{
    scanSearchFoldersForAllApps();
    sortAllApps();
    rebuildDependentApps();
    rebuildEverythingSet();
    scanDidEnd();
    loadAllIconsPrioritizingGroup(AllGroup);
}

void OTAppManager::startFullScanTimer()
{
    _fullScanTimer.start();
}

void OTAppManager::fullScanTimerFire()
{
    _fullScanTimer.stop();
    fullScan();
}

void OTAppManager::scanPathListDidChange()
{
    fullScanTimerFire();
    startSpotlightQuery();
}

AppList OTAppManager::launchedOTApps() const
{
    AppList apps;
    const QStringList paths = _desktop.runningApplications().launchedApplications();
    for (const QString &path : paths) {
        apps.append(std::make_shared<OTApp>(path, _desktop));
    }
    return apps;
}

const AppList &OTAppManager::runningApps()
{
    if (_runningApps.isEmpty()) {
        _runningApps = launchedOTApps();
    }
    return _runningApps;
}

void OTAppManager::runningAppsListDidChange()
{
    AppList running = RunningOrder::refreshed(_runningApps, launchedOTApps());
    if (!sortsRunningByLaunchOrder()) {
        sortApps(running, sortOrder());
    }
    if (running != _runningApps) {
        const ChangeScope scope(*this, { QStringLiteral("runningApps") });
        _runningApps = running;
    }
    _newApplications.remove(pathsFromApps(_runningApps));
    loadIconsForApps(AppArray(_runningApps));
    const PathSet remaining(_runningApps);
    _frontApps.removeIf([&remaining](const AppRef &app) { return !remaining.contains(app); });
}

void OTAppManager::handleAppFrontSwitched()
{
    if (const AppRef active = activeApp()) {
        RunningOrder::moveToFront(_frontApps, active);
    }
}

bool OTAppManager::isAppRunning(const AppRef &app) const
{
    return indexOfApp(_runningApps, app) >= 0;
}

AppRef OTAppManager::activeApp()
{
    const QString path = _desktop.runningApplications().activeApplication();
    if (path.isEmpty()) {
        return nullptr;
    }
    const AppRef self = ownApp();
    const AppRef fresh = path == _ownPath ? self : std::make_shared<OTApp>(path, _desktop);
    const qsizetype running = indexOfApp(_runningApps, fresh);
    if (running >= 0) {
        return _runningApps[running];
    }
    if (fresh != self) {
        loadIconsForApps(AppArray(AppList { fresh }));
    }
    return fresh;
}

// Made once: it comes to the front each time that the panel is shown, and an icon that arrives has
// everything sorted by colour again.
AppRef OTAppManager::ownApp()
{
    const QString path = _desktop.runningApplications().ownApplication();
    if (!_ownApp || _ownPath != path) {
        _ownPath = path;
        _ownApp = std::make_shared<OTApp>(path, _desktop);
        if (!path.isEmpty()) {
            loadIconsForApps(AppArray(AppList { _ownApp }));
        }
    }
    return _ownApp;
}

AppRef OTAppManager::lastActiveApp()
{
    return RunningOrder::lastActive(_frontApps, _runningApps, ownApp());
}

void OTAppManager::quitApp(const AppRef &app) const
{
    app->quit();
}

AppList OTAppManager::allAppsThatCanAcceptURL(const QUrl &document) const
{
    AppList apps = flattened(_allApps);
    const QSet<QString> accepting =
        _desktop.documents().applicationsThatAccept(document, pathsFromApps(apps));
    apps.removeIf([&accepting](const AppRef &app) { return !accepting.contains(app->path()); });
    return apps;
}

AppList OTAppManager::allAppsThatPreferURL(const QUrl &document) const
{
    AppList apps = flattened(_allApps);
    const QSet<QString> preferring =
        _desktop.documents().applicationsThatPrefer(document, pathsFromApps(apps));
    apps.removeIf([&preferring](const AppRef &app) { return !preferring.contains(app->path()); });
    return apps;
}
