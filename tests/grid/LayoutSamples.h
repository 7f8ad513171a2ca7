// Layouts for the tests of the grid.

#pragma once

#include "grid/layout/GridLayout.h"

namespace LayoutSamples {

constexpr QSizeF Roomy { 2000, 2000 };

inline GridLayout unformed(
    const GridSettings &settings, const GridContents &contents, const QSizeF &bounds)
{
    GridLayout layout;
    layout.setSettings(settings);
    layout.setContents(contents);
    layout.setMaxIconViewSize(bounds);
    return layout;
}

inline GridLayout searched(
    const GridSettings &settings, const GridContents &contents, const QSizeF &bounds = Roomy)
{
    GridLayout layout = unformed(settings, contents, bounds);
    layout.calcRowColCount();
    return layout;
}

// Bunches in a forced shape.
inline GridLayout forced(const GridSettings &settings, const std::vector<quint64> &bunchSizes,
    quint64 rows, quint64 orCols)
{
    GridLayout layout = unformed(settings, { false, false, bunchSizes }, Roomy);
    layout.forceRowColCountForRows(rows, orCols);
    return layout;
}

} // namespace LayoutSamples
