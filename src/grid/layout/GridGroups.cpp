#include "grid/layout/GridGroups.h"

#include "catalogue/OTAppManager.h"

#include <QCoreApplication>

namespace {

struct Words
{
    Q_DECLARE_TR_FUNCTIONS(OTIconView)
};

} // namespace

int groupToShowConsideringModifiers(int group, bool isOptionHeld, qint64 orientation)
{
    if (isOptionHeld && (group == IncludedGroup || group == Included1DGroup)) {
        group += AllGroup - IncludedGroup;
    }
    return orientation == 0 && GridGroups::isBunched(group) ? group + 1 : group;
}

bool GridGroups::isFavourites(int group)
{
    return group == UserGroup || group == User1DGroup;
}

bool GridGroups::isExcluded(int group)
{
    return group == ExcludedGroup || group == Excluded1DGroup;
}

bool GridGroups::isBunched(int group)
{
    return group == IncludedGroup || group == ExcludedGroup || group == AllGroup
        || group == UserGroup;
}

QString GridGroups::listOf(int group)
{
    switch (group) {
    case RunningGroup:
        return QStringLiteral("runningApps");
    case IncludedGroup:
    case Included1DGroup:
        return QStringLiteral("includedApps");
    case ExcludedGroup:
    case Excluded1DGroup:
        return QStringLiteral("excludedApps");
    case AllGroup:
    case All1DGroup:
        return QStringLiteral("allApps");
    case UserGroup:
    case User1DGroup:
        return QStringLiteral("userApps");
    default:
        return {};
    }
}

QString GridGroups::titleOf(int group)
{
    switch (group) {
    case RunningGroup:
        return Words::tr("Running applications");
    case IncludedGroup:
    case Included1DGroup:
        return Words::tr("Included applications");
    case ExcludedGroup:
    case Excluded1DGroup:
        return Words::tr("Excluded applications");
    case AllGroup:
    case All1DGroup:
        return Words::tr("All applications");
    case MissingGroup:
        return Words::tr("Missing applications");
    case UserGroup:
    case User1DGroup:
        return Words::tr("Favorites");
    default:
        return {};
    }
}

QString GridGroups::hintWhenEmpty(int group, Known known)
{
    switch (group) {
    case RunningGroup:
        return Words::tr("Nothing is running. An application appears here while it runs.");
    case ExcludedGroup:
    case Excluded1DGroup:
        return Words::tr("Nothing is excluded. Choose Exclude in an application's menu.");
    case MissingGroup:
        return Words::tr("Nothing is missing. What was excluded and is gone appears here.");
    case UserGroup:
    case User1DGroup:
        return Words::tr(
            "No favourites yet. Drag an icon onto the Favorite button, or choose Add Favorite in "
            "its menu.");
    case IncludedGroup:
    case Included1DGroup:
        if (known == Known::Applications) {
            return Words::tr("Everything is excluded. Choose Include in an application's menu.");
        }
        break;
    default:
        break;
    }
    return Words::tr("No applications were found in the folders that are searched.");
}
