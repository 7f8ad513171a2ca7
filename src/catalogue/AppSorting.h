// The orders in which a list can stand.

#pragma once

#include "catalogue/AppList.h"

// The values of the preference "groupContentsSortOrder". Any other value means ByName.
enum class SortOrder { ByPath = 0, ByName = 1, ByColor = 2 };

SortOrder sortOrderFromPreference(qint64 value);

// Sorts in place, names and paths without regard to case; equal ones keep their order.
void sortApps(AppList &list, SortOrder order);
