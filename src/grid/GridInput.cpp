#include "grid/GridInput.h"

#include "catalogue/OTAppManager.h"
#include "support/UserDefaults.h"

void GridInput::registerDefaults()
{
    UserDefaults::standard().registerDefaults({
        { QStringLiteral("groupOrientation"), 2 },
        { QStringLiteral("iconReadingOrder"), 1 },
        { QStringLiteral("maximumIconSize"), 64 },
        { QStringLiteral("iconPadding"), 2 },
        { QStringLiteral("iconSpacing"), 0 },
        { QStringLiteral("minimizeEmptyCells"), false },
    });
}

GridSettings GridInput::settings()
{
    const UserDefaults &defaults = UserDefaults::standard();
    GridSettings settings;
    settings.groupOrientation = defaults.integerForKey(QStringLiteral("groupOrientation"));
    settings.iconReadingOrder = defaults.integerForKey(QStringLiteral("iconReadingOrder"));
    settings.minimizeEmptyCells = defaults.boolForKey(QStringLiteral("minimizeEmptyCells"));
    settings.maximumIconSize = defaults.integerForKey(QStringLiteral("maximumIconSize"));
    settings.iconPadding = defaults.integerForKey(QStringLiteral("iconPadding"));
    settings.iconSpacing = defaults.integerForKey(QStringLiteral("iconSpacing"));
    return settings;
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
