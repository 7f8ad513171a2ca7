#include "catalogue/files/PreferenceRanges.h"

#include <algorithm>
#include <array>

namespace {

struct Range
{
    const char *key;
    double least;
    double most;
};

constexpr double oneDay = 24 * 60 * 60;

// What the controls of the preferences offer, or more where the program can use more.
constexpr std::array ranges {
    Range { "maximumIconSize", 8, 128 },
    Range { "iconPadding", 0, 64 },
    Range { "iconSpacing", 0, 64 },
    Range { "excludedIconAlpha", 0, 1 },
    Range { "windowAlpha", 0, 1 },
    Range { "groupContentsSortOrder", 0, 2 },
    Range { "groupOrientation", 0, 2 },
    Range { "iconReadingOrder", 1, 2 },
    Range { "groupToShowWhenWindowOpens", -1, 9 },
    Range { "maxFolderRecursionDepth", 1, 99 },
    Range { "colorSortGrayThreshold", 0, 1 },
    Range { "colorSortMinSaturation", 0, 1 },
    Range { "colorSortMinLuminosity", 0, 1 },
    Range { "colorSortWrapHue", -360, 360 },
    Range { "hotKeyCode", 0, 0xffff },
    Range { "hotKeyModifiers", 0, 0xffff },
    Range { "cursorHotSpotLocation", 0, 7 },
    Range { "cursorHotSpotDelay", 0, oneDay },
    Range { "com.apple.springing.delay", 0, oneDay },
    Range { "tabletHandedness", 0, 1 },
};

} // namespace

bool PreferenceRanges::holds(const QString &key, double value)
{
    const auto *const range = std::find_if(ranges.begin(), ranges.end(),
        [&key](const Range &one) { return key == QLatin1String(one.key); });
    return range == ranges.end() || (value >= range->least && value <= range->most);
}
