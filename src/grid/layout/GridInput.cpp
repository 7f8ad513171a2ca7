#include "grid/layout/GridInput.h"

#include "catalogue/OTAppManager.h"
#include "grid/layout/GridKeys.h"
#include "support/UserDefaults.h"

void GridInput::registerDefaults()
{
    UserDefaults::standard().registerDefaults({
        { GridKeys::groupOrientation, 2 },
        { GridKeys::iconReadingOrder, 1 },
        { GridKeys::maximumIconSize, 64 },
        { GridKeys::iconPadding, 2 },
        { GridKeys::iconSpacing, 0 },
        { GridKeys::minimizeEmptyCells, false },
    });
}

GridSettings GridInput::settings()
{
    const UserDefaults &defaults = UserDefaults::standard();
    GridSettings settings;
    settings.groupOrientation = defaults.integerForKey(GridKeys::groupOrientation);
    settings.iconReadingOrder = defaults.integerForKey(GridKeys::iconReadingOrder);
    settings.minimizeEmptyCells = defaults.boolForKey(GridKeys::minimizeEmptyCells);
    settings.maximumIconSize = defaults.integerForKey(GridKeys::maximumIconSize);
    settings.iconPadding = defaults.integerForKey(GridKeys::iconPadding);
    settings.iconSpacing = defaults.integerForKey(GridKeys::iconSpacing);
    return settings;
}

bool GridInput::isInColorOrder()
{
    return sortOrderFromPreference(
               UserDefaults::standard().integerForKey(GridKeys::groupContentsSortOrder))
        == SortOrder::ByColor;
}

bool GridInput::readAlong(qint64 orientation)
{
    UserDefaults &defaults = UserDefaults::standard();
    const qint64 readingOrder = orientation == 2 ? 1 : 2;
    if (defaults.integerForKey(GridKeys::iconReadingOrder) == readingOrder) {
        return false;
    }
    defaults.setObject(GridKeys::iconReadingOrder, readingOrder);
    return true;
}

GridContents GridInput::contents(const AppArray &array, int group)
{
    GridContents contents;
    contents.isFlat = array.isFlat();
    contents.isRunningGroup = group == RunningGroup;
    const BunchList bunches = array.bunches();
    for (const AppList &bunch : bunches) {
        contents.bunchSizes.push_back(quint64(bunch.size()));
    }
    return contents;
}

AppList GridInput::appsOfCells(const GridLayout &layout, const AppArray &array)
{
    const BunchList bunches = array.bunches();
    AppList apps;
    for (quint64 row = 0; row < layout.rowCount(); ++row) {
        for (quint64 column = 0; column < layout.columnCount(); ++column) {
            const GridCell &cell = layout.cellAt(row, column);
            apps.append(
                cell.hasApp ? bunches[qsizetype(cell.bunch)][qsizetype(cell.index)] : nullptr);
        }
    }
    return apps;
}
