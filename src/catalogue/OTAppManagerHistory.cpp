// The part of the catalogue that keeps what the user arranges by hand, takes it back and does it
// again.

#include "catalogue/ChangeScope.h"
#include "catalogue/OTApp.h"
#include "catalogue/OTAppManager.h"
#include "catalogue/files/StandIns.h"
#include "platform/Desktop.h"

using Kind = ArrangementStep::Kind;
using Side = ArrangementStep::Side;

namespace {

Arrangement arrangementOf(const Favourites &favourites)
{
    return { pathArraysFromAppArrays(favourites.bunches()), pathsFromApps(favourites.flat()) };
}

// The step by what stands in for its applications now.
ArrangementStep shownStep(const ArrangementStep &kept, const StandIns &standIns)
{
    const auto shown = [&standIns](const Arrangement &arrangement) {
        return Arrangement { standIns.shown(arrangement.bunches),
            flattened(standIns.shown({ arrangement.flat })) };
    };
    return { kept.kind, flattened(standIns.shown({ kept.paths })), shown(kept.before),
        shown(kept.after), kept.colorBefore, kept.colorAfter };
}

} // namespace

void OTAppManager::arrangeUserApps(Kind kind, const Favourites &arranged, const QStringList &paths)
{
    ArrangementStep step { kind, paths, arrangementOf(_favourites), arrangementOf(arranged) };
    // Others may be given as well, which taking back leaves alone.
    const QStringList concerned = step.before.flat + step.after.flat;
    step.paths.removeIf([&](const QString &path) { return !concerned.contains(path); });
    setUserApps(arranged, paths);
    if (step.before != step.after) {
        addToHistory(step);
    }
}

void OTAppManager::setUserApps(const Favourites &favourites, const QStringList &changed)
{
    {
        const ChangeScope scope(
            *this, { QStringLiteral("userApps"), QStringLiteral("userApps1D") });
        _favourites = favourites;
    }
    writeUserApps(changed);
}

void OTAppManager::addToHistory(const ArrangementStep &step)
{
    _history.add(step);
    Q_EMIT historyChanged();
}

std::optional<ArrangementStep> OTAppManager::undoLastChange()
{
    const std::optional<ArrangementStep> step = _history.undo();
    if (step) {
        goTo(Side::Before, *step);
    }
    return step;
}

std::optional<ArrangementStep> OTAppManager::redoLastChange()
{
    const std::optional<ArrangementStep> step = _history.redo();
    if (step) {
        goTo(Side::After, *step);
    }
    return step;
}

void OTAppManager::goTo(Side side, const ArrangementStep &kept)
{
    const ArrangementStep step = shownStep(kept, StandIns(_desktop.items()));
    const AppList apps = appsFromPaths(step.paths);
    if (step.isOfFavourites()) {
        const Arrangement wanted = step.favouritesOn(side, arrangementOf(_favourites));
        Favourites favourites;
        favourites.setBunches(appArraysFromPathArrays(wanted.bunches));
        favourites.setFlat(appsFromPaths(wanted.flat));
        if (favourites != _favourites) {
            setUserApps(favourites, step.paths);
        }
        // What was in no list for a while may have a new entry, without an icon.
        loadIconsForApps(AppArray(apps));
    } else if (step.kind == Kind::Recolor) {
        for (const QString &path : step.paths) {
            setCorrectedColor(path, side == Side::After ? step.colorAfter : step.colorBefore);
        }
    } else {
        const bool isExcluded = (step.kind == Kind::Exclude) == (side == Side::After);
        for (const AppRef &app : apps) {
            isExcluded ? addExclusion(app) : removeExclusion(app);
        }
    }
    Q_EMIT historyChanged();
}
