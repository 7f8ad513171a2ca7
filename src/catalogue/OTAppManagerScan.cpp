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
    rebuildDependentApps();
    runningAppsListDidChange();
    rebuildEverythingSet();
    loadAllIconsPrioritizingGroup(group == -1 ? AllGroup : group);
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
        // An entry may be called otherwise than at the last scan, and sorting comes before the
        // icons.
        for (const AppRef &app : std::as_const(bunch)) {
            app->forgetDisplayName();
        }
        sortArray(bunch);
        if (!bunch.isEmpty()) {
            found.append(bunch);
        }
    }
    _allApps = found;
    rebuildAllApps1D();
    writeAllApps();
    showProgressStep(0, 0, {});
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
    const ChangeScope scope(*this, { QStringLiteral("runningApps") });
    _runningApps = RunningOrder::refreshed(_runningApps, launchedOTApps());
    sortArray(_runningApps);
    loadIconsForApps(AppArray(_runningApps));
    const PathSet running(_runningApps);
    _frontApps.removeIf([&running](const AppRef &app) { return !running.contains(app); });
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
    const auto fresh = std::make_shared<OTApp>(path, _desktop);
    const qsizetype running = indexOfApp(_runningApps, fresh);
    if (running >= 0) {
        return _runningApps[running];
    }
    loadIconsForApps(AppArray(AppList { fresh }));
    return fresh;
}

AppRef OTAppManager::lastActiveApp() const
{
    const auto self =
        std::make_shared<OTApp>(_desktop.runningApplications().ownApplication(), _desktop);
    return RunningOrder::lastActive(_frontApps, _runningApps, self);
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
