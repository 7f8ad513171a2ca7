#include "catalogue/Favourites.h"

#include "catalogue/OTApp.h"

#include <algorithm>

namespace {

void appendEachOnce(AppList &to, const AppList &from, PathSet &seen)
{
    for (const AppRef &app : from) {
        if (!seen.contains(app)) {
            seen.insert(app);
            to.append(app);
        }
    }
}

} // namespace

void Favourites::setBunches(const BunchList &bunches)
{
    PathSet seen;
    _bunches.clear();
    for (const AppList &bunch : bunches) {
        appendEachOnce(_bunches.emplaceBack(), bunch, seen);
    }
}

void Favourites::setFlat(const AppList &flat)
{
    PathSet seen;
    _flat.clear();
    appendEachOnce(_flat, flat, seen);
}

Favourites::Place Favourites::placeOf(const AppRef &app) const
{
    for (qsizetype bunch = 0; bunch < _bunches.size(); ++bunch) {
        const qsizetype index = indexOfApp(_bunches[bunch], app);
        if (index >= 0) {
            return { bunch, index };
        }
    }
    return {};
}

void Favourites::appendToFlat(const AppRef &app)
{
    if (indexOfApp(_flat, app) < 0) {
        _flat.append(app);
    }
}

bool Favourites::moveApp(const AppRef &app, qsizetype toBunch, qsizetype index)
{
    const Place from = placeOf(app);
    if (from.isFound() && from.bunch == toBunch && from.index == index) {
        return false;
    }
    const bool isNewBunchWanted = toBunch < 0 || toBunch >= _bunches.size();
    if (from.isFound()) {
        _bunches[from.bunch].removeAt(from.index);
        if (_bunches[from.bunch].isEmpty() && from.bunch != toBunch) {
            _bunches.removeAt(from.bunch);
            if (from.bunch < toBunch) {
                --toBunch;
            }
        }
        // A bunch that moved down into the place of the emptied one is treated like the bunch
        // itself.
        if (toBunch == from.bunch && from.index < index) {
            --index;
        }
    } else {
        appendToFlat(app);
    }
    if (isNewBunchWanted || toBunch >= _bunches.size()) {
        _bunches.append(AppList { app });
    } else {
        AppList &bunch = _bunches[toBunch];
        bunch.insert(std::clamp<qsizetype>(index, 0, bunch.size()), app);
    }
    return true;
}

bool Favourites::moveAppInFlatOrder(const AppRef &app, qsizetype index)
{
    const qsizetype from = indexOfApp(_flat, app);
    if (from >= 0 && from == index) {
        return false;
    }
    if (from >= 0) {
        _flat.removeAt(from);
        if (from < index) {
            --index;
        }
    } else if (!placeOf(app).isFound()) {
        _bunches.append(AppList { app });
    }
    _flat.insert(std::clamp<qsizetype>(index, 0, _flat.size()), app);
    return true;
}

void Favourites::moveAppNewBunchAtIndex(const AppRef &app, qsizetype newBunchAtIndex)
{
    qsizetype target =
        newBunchAtIndex < 0 ? _bunches.size() : std::min(newBunchAtIndex, _bunches.size());
    const Place from = placeOf(app);
    if (from.isFound()) {
        _bunches[from.bunch].removeAt(from.index);
        if (_bunches[from.bunch].isEmpty()) {
            _bunches.removeAt(from.bunch);
            if (target > from.bunch) {
                --target;
            }
        }
    } else {
        appendToFlat(app);
    }
    _bunches.insert(target, AppList { app });
}

bool Favourites::removeApps(const PathSet &apps)
{
    const bool isAnyRemoved = removeFromList(_flat, apps);
    for (qsizetype bunch = _bunches.size() - 1; bunch >= 0; --bunch) {
        if (removeFromList(_bunches[bunch], apps) && _bunches[bunch].isEmpty()) {
            _bunches.removeAt(bunch);
        }
    }
    return isAnyRemoved;
}

bool Favourites::removeAppsKeepingBunches(const PathSet &apps)
{
    const bool isAnyRemoved = removeFromList(_flat, apps);
    for (AppList &bunch : _bunches) {
        removeFromList(bunch, apps);
    }
    return isAnyRemoved;
}
