#include "catalogue/AppList.h"

#include "catalogue/OTApp.h"

#include <algorithm>

PathSet::PathSet(const AppList &apps)
{
    _paths.reserve(apps.size());
    for (const AppRef &app : apps) {
        insert(app);
    }
}

bool PathSet::contains(const AppRef &app) const
{
    return app && _paths.contains(app->path());
}

void PathSet::insert(const AppRef &app)
{
    _paths.insert(app->path());
}

qsizetype indexOfApp(const AppList &list, const AppRef &app)
{
    const auto found = std::find_if(
        list.begin(), list.end(), [&app](const AppRef &other) { return *other == *app; });
    return found == list.end() ? -1 : found - list.begin();
}

bool removeFromList(AppList &list, const PathSet &apps)
{
    return list.removeIf([&apps](const AppRef &app) { return apps.contains(app); }) > 0;
}

bool haveSameApps(const AppList &one, const AppList &other)
{
    const QStringList paths = pathsFromApps(one);
    const QStringList otherPaths = pathsFromApps(other);
    return QSet<QString>(paths.begin(), paths.end())
        == QSet<QString>(otherPaths.begin(), otherPaths.end());
}

AppList flattened(const BunchList &bunches)
{
    AppList list;
    for (const AppList &bunch : bunches) {
        list += bunch;
    }
    return list;
}

QStringList pathsFromApps(const AppList &apps)
{
    QStringList paths;
    paths.reserve(apps.size());
    for (const AppRef &app : apps) {
        paths.append(app->path());
    }
    return paths;
}

QList<QStringList> pathArraysFromAppArrays(const BunchList &bunches)
{
    QList<QStringList> arrays;
    arrays.reserve(bunches.size());
    for (const AppList &bunch : bunches) {
        arrays.append(pathsFromApps(bunch));
    }
    return arrays;
}
