#include "catalogue/OTAppManager.h"

#include "catalogue/ChangeScope.h"
#include "catalogue/OTApp.h"
#include "catalogue/RunningOrder.h"
#include "catalogue/files/Log.h"
#include "icons/IconLoader.h"
#include "platform/Desktop.h"
#include "support/NotificationCenter.h"
#include "support/UserDefaults.h"
#include "support/files/PropertyList.h"
#include "support/files/StandardPath.h"

#include <QScopedValueRollback>

#include <algorithm>

namespace {

qsizetype longest(const BunchList &bunches)
{
    qsizetype size = 0;
    for (const AppList &bunch : bunches) {
        size = std::max(size, bunch.size());
    }
    return size;
}

} // namespace

OTAppManager::OTAppManager(Desktop &desktop, Use use, QObject *parent)
    : QObject(parent)
    , _desktop(desktop)
    , _use(use)
    , _files(desktop.searchPaths(),
          use == Use::Normal ? CatalogueFiles::Writing::Allowed : CatalogueFiles::Writing::Never)
    , _newApplications(desktop.items())
{
    _fullScanTimer.setSingleShot(true);
    _fullScanTimer.setInterval(FullScanDelay);
    connect(&_fullScanTimer, &QTimer::timeout, this, [this] {
        const QScopedValueRollback<bool> background(_isScanInBackground, true);
        fullScanTimerFire();
    });
    _sortColorTimer.setSingleShot(true);
    _sortColorTimer.setInterval(SortColorDelay);
    connect(&_sortColorTimer, &QTimer::timeout, this, &OTAppManager::sortIconColorTimerFire);
    connect(&UserDefaults::standard(), &UserDefaults::changed, this,
        &OTAppManager::preferenceDidChange);

    const NotificationCenter &center = NotificationCenter::defaultCenter();
    connect(&center, &NotificationCenter::N_ScanPathListChanged, this,
        &OTAppManager::scanPathListDidChange);
    connect(
        &center, &NotificationCenter::N_AppIsMissing, this, &OTAppManager::scanPathListDidChange);
    connect(&center, &NotificationCenter::N_AppIconChanged, this, &OTAppManager::appIconChanged);

    connect(&center, &NotificationCenter::applicationDidFinishLaunching, this,
        &OTAppManager::startSpotlightQuery);
    connect(&desktop.liveQuery(), &LiveQuery::didUpdate, this, &OTAppManager::queryDidUpdate);

    connect(&_files, &CatalogueFiles::changedOutside, this, &OTAppManager::takeOverFiles);
    const RunningApplications &running = desktop.runningApplications();
    connect(
        &running, &RunningApplications::launched, this, &OTAppManager::runningAppsListDidChange);
    connect(
        &running, &RunningApplications::terminated, this, &OTAppManager::runningAppsListDidChange);
    connect(
        &running, &RunningApplications::frontSwitched, this, &OTAppManager::handleAppFrontSwitched);
    connect(&desktop.icons(), &IconProvider::iconsChanged, this, &OTAppManager::reloadAllIcons);
    connect(&IconLoader::sharedIconLoader(), &IconLoader::iconsLost, this,
        &OTAppManager::reloadAllIcons);
    connect(&IconLoader::sharedIconLoader(), &IconLoader::copiesSpare, this,
        &OTAppManager::takeKeptIcons);
    if (const AppRef active = activeApp()) {
        _frontApps.append(active);
    }
}

OTAppManager::~OTAppManager()
{
    if (_hasQuery) {
        _desktop.liveQuery().stop();
    }
    // Operations in the queue read icons from the desktop, which may go after the catalogue. One
    // that hangs is left to the end of the program.
    IconLoader::sharedIconLoader().cancelAll();
}

void OTAppManager::registerDefaults()
{
    NewApplications::registerDefaults();
    UserDefaults::standard().registerDefaults({
        { QStringLiteral("groupContentsSortOrder"), 1 },
        { QStringLiteral("colorSortGrayThreshold"), 0.05 },
        { QStringLiteral("colorSortWrapHue"), 0.0 },
        { QStringLiteral("colorSortMinSaturation"), 0.14 },
        { QStringLiteral("colorSortMinLuminosity"), 0.02 },
        { QStringLiteral("colorSortGraysBySecondaryColor"), false },
        { QStringLiteral("excludeArray"), QVariantList {} },
        { QStringLiteral("maxFolderRecursionDepth"), 4 },
        { QStringLiteral("sortRunningByLaunchOrder"), true },
    });
}

AppArray OTAppManager::appArrayForGroup(int group)
{
    switch (group) {
    case RunningGroup:
        return AppArray(runningApps());
    case IncludedGroup:
        return AppArray(_includedApps);
    case Included1DGroup:
        return AppArray(_includedApps1D);
    case ExcludedGroup:
        return AppArray(_excludedApps);
    case Excluded1DGroup:
        return AppArray(_excludedApps1D);
    case AllGroup:
        return AppArray(_allApps);
    case All1DGroup:
        return AppArray(_allApps1D);
    case MissingGroup:
        return AppArray(_missingApps);
    case UserGroup:
        return AppArray(_favourites.bunches());
    case User1DGroup:
        return AppArray(_favourites.flat());
    default:
        return {};
    }
}

AppRef OTAppManager::appForPath(const QString &path)
{
    AppRef &app = _everythingSet[standardizedPath(path)];
    if (!app) {
        app = std::make_shared<OTApp>(path, _desktop);
    }
    return app;
}

AppRef OTAppManager::knownAppForPath(const QString &path) const
{
    return _everythingSet.value(standardizedPath(path));
}

AppList OTAppManager::appsFromPaths(const QStringList &paths)
{
    AppList apps;
    apps.reserve(paths.size());
    for (const QString &path : paths) {
        apps.append(appForPath(path));
    }
    return apps;
}

BunchList OTAppManager::appArraysFromPathArrays(const QList<QStringList> &arrays)
{
    BunchList bunches;
    bunches.reserve(arrays.size());
    for (const QStringList &paths : arrays) {
        bunches.append(appsFromPaths(paths));
    }
    return bunches;
}

qsizetype OTAppManager::allAppsTotalCount() const
{
    return flattened(_allApps).size();
}

qsizetype OTAppManager::allAppsLongestArrayCount() const
{
    return longest(_allApps);
}

qsizetype OTAppManager::includedAppsLongestArrayCount() const
{
    return longest(_includedApps);
}

// What runs need not be what a scan would take.
bool OTAppManager::canKeep(const AppRef &app)
{
    const bool isHeld = PropertyList::canHold(app->path());
    if (!isHeld) {
        qCWarning(lcCatalogue, "cannot keep %s: no property list can hold its name",
            qUtf8Printable(app->path()));
    }
    return isHeld;
}

void OTAppManager::excludeApp(const AppRef &app)
{
    // It may stand in one of the lists that change.
    const QString path = app->path();
    if (addExclusion(app)) {
        addToHistory({ ArrangementStep::Kind::Exclude, { path }, {}, {} });
    }
}

bool OTAppManager::addExclusion(const AppRef &app)
{
    const bool isNew =
        indexOfApp(_excludedApps1D, app) < 0 && indexOfApp(_missingApps, app) < 0 && canKeep(app);
    if (isNew) {
        const AppRef own = appForPath(app->path());
        {
            const ChangeScope scope(*this, { QStringLiteral("excludedApps1D") });
            _excludedApps1D.append(own);
        }
        writeExcludedApps({ own });
    }
    rebuildDependentApps();
    return isNew;
}

void OTAppManager::includeApp(const AppRef &app)
{
    const QString path = app->path();
    if (removeExclusion(app)) {
        addToHistory({ ArrangementStep::Kind::Include, { path }, {}, {} });
    }
}

bool OTAppManager::removeExclusion(const AppRef &app)
{
    const AppList included { app };
    bool wasExcluded = false;
    bool wasMissing = false;
    {
        const ChangeScope scope(*this, { QStringLiteral("excludedApps1D") });
        wasExcluded = removeFromList(_excludedApps1D, PathSet(included));
        wasMissing = removeFromList(_missingApps, PathSet(included));
    }
    writeExcludedApps(included);
    if (wasMissing) {
        takeStoredUserApps();
    }
    rebuildDependentApps();
    return wasExcluded || wasMissing;
}

void OTAppManager::excludeOnFirstStart()
{
    if (!_files.isKnown(CatalogueFiles::List::ExcludedApps)) {
        autoExcludeDockApps(/*dockApps=*/false, /*namedApps=*/true);
    }
}

void OTAppManager::autoExcludeDockApps(bool dockApps, bool namedApps)
{
    PathSet excluded(_excludedApps1D);
    AppList added;
    const auto exclude = [&](const AppRef &app) {
        if (!excluded.contains(app)) {
            excluded.insert(app);
            added.append(app);
        }
    };
    if (namedApps) {
        for (const AppRef &app : std::as_const(_allApps1D)) {
            if (app->containsExcludedKeywords()) {
                exclude(app);
            }
        }
    }
    if (dockApps) {
        const PathSet all(_allApps1D);
        for (const AppRef &app : appsFromPaths(_desktop.pinnedApplications().paths())) {
            if (all.contains(app)) {
                exclude(app);
            }
        }
    }
    if (added.isEmpty()) {
        return;
    }
    {
        const ChangeScope scope(*this, { QStringLiteral("excludedApps1D") });
        _excludedApps1D += added;
    }
    writeExcludedApps(added);
    rebuildDependentApps();
}

void OTAppManager::removeAppsFromUserApps(const AppList &apps)
{
    Favourites remaining = _favourites;
    if (remaining.removeApps(PathSet(apps))) {
        arrangeUserApps(ArrangementStep::Kind::Remove, remaining, pathsFromApps(apps));
    }
}

void OTAppManager::removeAppsFromAllArrays(const AppList &apps)
{
    const auto isKnown = [this](const AppRef &app) { return _everythingSet.contains(app->path()); };
    if (std::none_of(apps.begin(), apps.end(), isKnown)) {
        return;
    }
    const PathSet removed(apps);
    Favourites favourites = _favourites;
    if (favourites.removeApps(removed)) {
        setUserApps(favourites, pathsFromApps(apps));
    }
    const auto remove = [&](BunchList &bunches, AppList &flat, const QStringList &keys) {
        AppList remaining = flat;
        if (removeFromList(remaining, removed)) {
            const ChangeScope scope(*this, keys);
            _listedPaths.reset();
            flat = remaining;
            for (AppList &bunch : bunches) {
                removeFromList(bunch, removed);
            }
        }
    };
    remove(_allApps, _allApps1D, { QStringLiteral("allApps"), QStringLiteral("allApps1D") });
    remove(_includedApps, _includedApps1D,
        { QStringLiteral("includedApps"), QStringLiteral("includedApps1D") });
    remove(_excludedApps, _excludedApps1D,
        { QStringLiteral("excludedApps"), QStringLiteral("excludedApps1D") });
    rebuildEverythingSet();
}

void OTAppManager::moveApp(const AppRef &app, int toGroup, qsizetype bunch, qsizetype index)
{
    if (!app || (toGroup != UserGroup && toGroup != User1DGroup) || !canKeep(app)) {
        return;
    }
    Favourites moved = _favourites;
    const AppRef own = appForPath(app->path());
    const bool isMoved = toGroup == UserGroup ? moved.moveApp(own, bunch, index)
                                              : moved.moveAppInFlatOrder(own, index);
    if (isMoved) {
        arrangeUserApps(kindOfMove(own), moved, { own->path() });
    }
}

void OTAppManager::moveAppNewBunchAtIndex(const AppRef &app, int toGroup, qsizetype newBunchAtIndex)
{
    if (!app || toGroup != UserGroup || !canKeep(app)) {
        return;
    }
    Favourites moved = _favourites;
    const AppRef own = appForPath(app->path());
    moved.moveAppNewBunchAtIndex(own, newBunchAtIndex);
    arrangeUserApps(kindOfMove(own), moved, { own->path() });
}

ArrangementStep::Kind OTAppManager::kindOfMove(const AppRef &app) const
{
    return indexOfApp(userApps1D(), app) < 0 ? ArrangementStep::Kind::Add
                                             : ArrangementStep::Kind::Move;
}

void OTAppManager::preferenceDidChange(
    const QString &key, const QVariant &oldValue, const QVariant &newValue)
{
    if (key == QLatin1String("groupContentsSortOrder")) {
        sortAllArrays();
    } else if (key == QLatin1String("sortRunningByLaunchOrder")) {
        runningAppsListDidChange();
    } else if (key == QLatin1String("scanDirectories")
        || key == QLatin1String("searchDirectories")) {
        NotificationCenter::defaultCenter().postWhenIdle(
            &NotificationCenter::N_ScanPathListChanged);
    } else if (key == QLatin1String("maxFolderRecursionDepth") && _hasQuery) {
        startSpotlightQuery();
    } else if (colorSortingKeys().contains(key) && oldValue.toFloat() != newValue.toFloat()) {
        loadIconsForApps(AppArray(_allApps1D));
    }
}
