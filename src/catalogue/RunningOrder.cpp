#include "catalogue/RunningOrder.h"

#include "catalogue/OTApp.h"

namespace {

// The last element that is not `self`, or the first element of the list.
AppRef lastOther(const AppList &list, const AppRef &self)
{
    for (auto app = list.crbegin(); app != list.crend(); ++app) {
        if (!(**app == *self)) {
            return *app;
        }
    }
    return list.isEmpty() ? nullptr : list.first();
}

} // namespace

AppList RunningOrder::refreshed(const AppList &before, const AppList &fresh)
{
    AppList list;
    for (const AppRef &app : fresh) {
        const qsizetype known = indexOfApp(before, app);
        list.append(known >= 0 ? before[known] : app);
    }
    return list;
}

void RunningOrder::moveToFront(AppList &frontApps, const AppRef &app)
{
    PathSet moved;
    moved.insert(app);
    removeFromList(frontApps, moved);
    frontApps.append(app);
}

AppRef RunningOrder::lastActive(
    const AppList &frontApps, const AppList &runningApps, const AppRef &self)
{
    const AppRef front = lastOther(frontApps, self);
    if ((front && !(*front == *self)) || runningApps.isEmpty()) {
        return front;
    }
    return lastOther(runningApps, self);
}
