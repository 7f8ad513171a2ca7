// The part of the catalogue that follows what comes, goes and changes in the folders to scan.

#include "catalogue/ChangeScope.h"
#include "catalogue/OTApp.h"
#include "catalogue/OTAppManager.h"
#include "catalogue/files/FolderWalk.h"
#include "catalogue/files/ScanFolders.h"
#include "platform/Desktop.h"
#include "support/UserDefaults.h"
#include "support/files/PropertyList.h"

namespace {

// What a scan makes of an item.
LiveQuery::Kind kindOf(const Items &items, const QString &path)
{
    if (!PropertyList::canHold(path)) {
        return LiveQuery::Kind::Neither;
    }
    const QString name = path.mid(path.lastIndexOf(QLatin1Char('/')) + 1);
    switch (FolderWalk::classified(items.flagsOf(path), name)) {
    case FolderWalk::ItemKind::Application:
        return LiveQuery::Kind::Result;
    case FolderWalk::ItemKind::Folder:
        return LiveQuery::Kind::Folder;
    case FolderWalk::ItemKind::Other:
        break;
    }
    return LiveQuery::Kind::Neither;
}

} // namespace

QStringList OTAppManager::spotlightScanPaths() const
{
    return ScanFolders::withoutNested(pathsToScan());
}

void OTAppManager::startSpotlightQuery()
{
    if (_use != Use::Normal) {
        return;
    }
    LiveQuery &query = _desktop.liveQuery();
    query.stop();
    LiveQuery::Scope scope;
    scope.folders = spotlightScanPaths();
    _hasQuery = !scope.folders.isEmpty();
    if (!_hasQuery) {
        return;
    }
    const QStringList roots = pathsToScan();
    for (const QString &root : roots) {
        if (root.startsWith(QLatin1Char('/')) && !scope.folders.contains(root)) {
            scope.nested.append(root);
        }
    }
    Items &items = _desktop.items();
    scope.levels = FolderWalk(items, roots,
        UserDefaults::standard().integerForKey(QStringLiteral("maxFolderRecursionDepth")))
                       .maxRecursionDepth();
    scope.kindOf = [&items](const QString &path) { return kindOf(items, path); };
    query.start(scope, pathArraysFromAppArrays(_allApps));
}

void OTAppManager::queryDidUpdate(const LiveQuery::Update &update)
{
    qsizetype added = 0;
    for (const QString &path : update.added) {
        added += isListed(appForPath(path)) ? 0 : 1;
    }
    qsizetype changed = 0;
    AppList known;
    for (const QString &path : update.changed) {
        const AppRef app = appForPath(path);
        if (isListed(app)) {
            known.append(app);
        } else {
            ++changed;
        }
    }
    reloadApps(known);
    if (added > 0 || !update.removed.isEmpty() || changed > 0 || update.isIncomplete) {
        startFullScanTimer();
    }
}

// Shows names and icons as they are now, without a scan.
void OTAppManager::reloadApps(const AppList &apps)
{
    if (apps.isEmpty()) {
        return;
    }
    const PathSet paths(apps);
    AppList entries = apps;
    for (const AppRef &app : std::as_const(_runningApps)) {
        if (paths.contains(app) && !entries.contains(app)) {
            entries.append(app);
        }
    }
    for (const AppRef &app : std::as_const(entries)) {
        _areNamesChanged = app->renewDisplayName() || _areNamesChanged;
        app->forgetIconSource();
    }
    loadIconsForApps(AppArray(entries));
    if (_areNamesChanged) {
        sortAllArrays();
        scanDidEnd();
    }
}

bool OTAppManager::isListed(const AppRef &app)
{
    if (!_listedPaths) {
        _listedPaths = PathSet(_allApps1D);
    }
    return _listedPaths->contains(app);
}
