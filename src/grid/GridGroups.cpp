#include "grid/GridGroups.h"

int groupToShowConsideringModifiers(int group, bool isOptionHeld, qint64 orientation)
{
    if (isOptionHeld && (group == 1 || group == 2)) {
        group += 4;
    }
    const bool isBunched = group == 1 || group == 3 || group == 5 || group == 8;
    return orientation == 0 && isBunched ? group + 1 : group;
}
