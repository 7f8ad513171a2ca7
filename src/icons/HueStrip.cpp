#include "icons/HueStrip.h"

#include <algorithm>
#include <cmath>

namespace {

// From the middle of a window to its ends: 18 degrees of hue, and 12 per cent of lightness.
constexpr double HueReach = 0.05;
constexpr double GrayReach = 0.06;

bool isBefore(const HueStrip::Icon &one, const HueStrip::Icon &other)
{
    return one.colorSortValue < other.colorSortValue;
}

} // namespace

HueStrip::HueStrip(const QList<Icon> &icons)
    : _icons(icons)
{
    _icons.removeIf([](const Icon &icon) { return !(icon.colorSortValue < ColorKey::Unknown); });
    std::stable_sort(_icons.begin(), _icons.end(), isBefore);
}

qsizetype HueStrip::indexAt(double place) const
{
    const auto index = qsizetype(std::floor(place * double(count())));
    return std::clamp<qsizetype>(index, std::min<qsizetype>(0, count() - 1), count() - 1);
}

qsizetype HueStrip::indexNearest(double colorSortValue) const
{
    const auto distance = [colorSortValue](const Icon &icon) {
        return std::abs(icon.colorSortValue - colorSortValue);
    };
    const auto nearest = std::min_element(_icons.cbegin(), _icons.cend(),
        [&](const Icon &one, const Icon &other) { return distance(one) < distance(other); });
    return nearest == _icons.cend() ? -1 : nearest - _icons.cbegin();
}

qsizetype HueStrip::indexAfter(qsizetype index, int direction) const
{
    const Icon &from = _icons[index];
    const double reach = from.isGray() ? GrayReach : HueReach;
    qsizetype next = index;
    while (next + direction >= 0 && next + direction < count()) {
        next += direction;
        if (std::abs(_icons[next].colorSortValue - from.colorSortValue) > reach
            || _icons[next].isGray() != from.isGray()) {
            break;
        }
    }
    return next;
}

HueWindow HueStrip::windowAt(qsizetype index) const
{
    const Icon &icon = _icons[index];
    const double value = icon.colorSortValue;
    if (icon.isGray()) {
        return { std::max(ColorKey::FirstGray, value - GrayReach), value + GrayReach };
    }
    return { value - HueReach,
        std::min(std::nextafter(ColorKey::FirstGray, 0.0), value + HueReach) };
}

HueStrip::Span HueStrip::spanOf(const HueWindow &window) const
{
    const auto first =
        std::lower_bound(_icons.cbegin(), _icons.cend(), Icon { window.from, {}, 0 }, isBefore);
    const auto end =
        std::upper_bound(_icons.cbegin(), _icons.cend(), Icon { window.to, {}, 0 }, isBefore);
    if (end <= first) {
        return {};
    }
    const auto all = double(count());
    return { double(first - _icons.cbegin()) / all, double(end - _icons.cbegin()) / all };
}
