// Layouts for the tests of the grid: one by its figures, and any number of random ones.

#pragma once

#include "grid/layout/GridLayout.h"

#include <QRandomGenerator>

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

struct Sample
{
    GridSettings settings;
    GridContents contents;
    QSizeF bounds;
    GridLayout layout;
};

// Any orientation, reading order, spacing and shape; a list without bunches where the orientation
// knows none. Never so many applications that one goes without a cell.
inline Sample random(QRandomGenerator &generator)
{
    const auto upTo = [&generator](int most) { return generator.bounded(most + 1); };
    Sample sample;
    sample.settings = { upTo(2), 1 + upTo(1), upTo(1) == 1, 8 + upTo(120), upTo(8), upTo(8) };
    GridContents &contents = sample.contents;
    contents = { sample.settings.groupOrientation == 0 || upTo(4) == 0, upTo(3) == 0, {} };
    const int bunches = contents.isFlat ? 1 : 1 + upTo(15);
    for (int i = 0; i < bunches; ++i) {
        contents.bunchSizes.push_back(quint64(upTo(4) == 0 ? upTo(1) : upTo(14)));
    }
    sample.bounds = QSizeF(60 + upTo(2000), 60 + upTo(1200));
    sample.layout = unformed(sample.settings, contents, sample.bounds);
    sample.layout.setFrameSize(QSizeF(50, 40));
    sample.layout.calcRowColCount();
    if (!contents.isFlat && upTo(2) == 0) {
        const auto lines = quint64(1 + upTo(6));
        const bool isByRows = sample.settings.groupOrientation == 2;
        sample.layout.forceRowColCountForRows(isByRows ? lines : 0, isByRows ? 0 : lines);
    }
    return sample;
}

} // namespace LayoutSamples
