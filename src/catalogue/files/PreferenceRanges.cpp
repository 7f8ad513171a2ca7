#include "catalogue/files/PreferenceRanges.h"

#include <algorithm>
#include <array>

namespace {

using PreferenceRanges::Range;

struct Known
{
    const char *key;
    Range range;
};

constexpr double oneDay = 24 * 60 * 60;

// What the controls of the preferences offer, or more where the program can use more.
constexpr std::array ranges {
    Known { "maximumIconSize", { 8, 128 } },
    Known { "iconPadding", { 0, 64 } },
    Known { "iconSpacing", { 0, 64 } },
    Known { "excludedIconAlpha", { 0, 1 } },
    Known { "windowAlpha", { 0, 1 } },
    Known { "groupContentsSortOrder", { 0, 2 } },
    Known { "groupOrientation", { 0, 2 } },
    Known { "iconReadingOrder", { 1, 2 } },
    Known { "groupToShowWhenWindowOpens", { -1, 9 } },
    Known { "maxFolderRecursionDepth", { 1, 99 } },
    Known { "colorSortGrayThreshold", { 0, 1 } },
    Known { "colorSortMinSaturation", { 0, 1 } },
    Known { "colorSortMinLuminosity", { 0, 1 } },
    Known { "colorSortWrapHue", { -360, 360 } },
    Known { "hotKeyCode", { -0xffff, 0xffff } },
    Known { "hotKeyModifiers", { 0, 0xffff } },
    Known { "cursorHotSpotLocation", { 0, 7 } },
    Known { "cursorHotSpotDelay", { 0, oneDay } },
    Known { "com.apple.springing.delay", { 0, oneDay } },
    Known { "tabletHandedness", { 0, 1 } },
};

} // namespace

std::optional<Range> PreferenceRanges::rangeOf(const QString &key)
{
    const auto *const known = std::find_if(ranges.begin(), ranges.end(),
        [&key](const Known &one) { return key == QLatin1String(one.key); });
    return known == ranges.end() ? std::nullopt : std::optional(known->range);
}

bool PreferenceRanges::holds(const QString &key, double value)
{
    const std::optional<Range> range = rangeOf(key);
    return !range || (value >= range->least && value <= range->most);
}
