#include "catalogue/AppSorting.h"

#include "catalogue/OTApp.h"

#include <algorithm>

SortOrder sortOrderFromPreference(qint64 value)
{
    return value == qint64(SortOrder::ByPath) ? SortOrder::ByPath : SortOrder::ByName;
}

void sortApps(AppList &list, SortOrder order)
{
    const auto less = [order](const AppRef &one, const AppRef &other) {
        const QString left = order == SortOrder::ByPath ? one->path() : one->displayName();
        const QString right = order == SortOrder::ByPath ? other->path() : other->displayName();
        return left.compare(right, Qt::CaseInsensitive) < 0;
    };
    std::stable_sort(list.begin(), list.end(), less);
}
