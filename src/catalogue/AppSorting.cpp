#include "catalogue/AppSorting.h"

#include "catalogue/OTApp.h"

#include <algorithm>

namespace {

// 1 when the first one belongs behind the second one, else 0: it tells no more than that.
int compareColors(const AppRef &one, const AppRef &other)
{
    return one->colorSortValue() > other->colorSortValue() ? 1 : 0;
}

} // namespace

SortOrder sortOrderFromPreference(qint64 value)
{
    switch (value) {
    case qint64(SortOrder::ByPath):
        return SortOrder::ByPath;
    case qint64(SortOrder::ByColor):
        return SortOrder::ByColor;
    default:
        return SortOrder::ByName;
    }
}

void sortApps(AppList &list, SortOrder order)
{
    if (order == SortOrder::ByColor) {
        std::stable_sort(list.begin(), list.end(),
            [](const AppRef &one, const AppRef &other) { return compareColors(other, one) > 0; });
        return;
    }
    const auto less = [order](const AppRef &one, const AppRef &other) {
        const QString left = order == SortOrder::ByPath ? one->path() : one->displayName();
        const QString right = order == SortOrder::ByPath ? other->path() : other->displayName();
        return left.compare(right, Qt::CaseInsensitive) < 0;
    };
    std::stable_sort(list.begin(), list.end(), less);
}
