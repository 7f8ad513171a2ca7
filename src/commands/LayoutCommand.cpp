#include "catalogue/OTApp.h"
#include "catalogue/OTAppManager.h"
#include "commands/CatalogueSetup.h"
#include "commands/Commands.h"
#include "commands/GroupNames.h"
#include "commands/Output.h"
#include "grid/layout/GridGroups.h"
#include "grid/layout/GridInput.h"
#include "grid/layout/GridLayout.h"

#include <QJsonArray>
#include <QJsonObject>

namespace {

QJsonValue orNull(quint64 field)
{
    return field == Coords::NotFound ? QJsonValue() : QJsonValue(qint64(field));
}

QJsonArray toJson(const QRectF &rect)
{
    return { rect.x(), rect.y(), rect.width(), rect.height() };
}

template <typename Rects> QJsonArray toJsonArray(const Rects &rects)
{
    QJsonArray array;
    for (const QRectF &rect : rects) {
        array.append(toJson(rect));
    }
    return array;
}

QJsonArray cellsToJson(const GridLayout &layout, const AppArray &array)
{
    const AppList apps = GridInput::appsOfCells(layout, array);
    QJsonArray cells;
    for (qsizetype place = 0; place < apps.size(); ++place) {
        const quint64 row = quint64(place) / layout.columnCount();
        const quint64 column = quint64(place) % layout.columnCount();
        const GridCell &cell = layout.cellAt(row, column);
        cells.append(QJsonObject { { QStringLiteral("row"), qint64(row) },
            { QStringLiteral("column"), qint64(column) },
            { QStringLiteral("app"), apps[place] ? QJsonValue(apps[place]->path()) : QJsonValue() },
            { QStringLiteral("bunch"), qint64(cell.bunch) },
            { QStringLiteral("index"), qint64(cell.index) },
            { QStringLiteral("rect"), toJson(cell.rect) } });
    }
    return cells;
}

QJsonArray pointsToJson(const GridLayout &layout, const QList<QPointF> &points)
{
    QJsonArray array;
    for (const QPointF &point : points) {
        const Coords coords = layout.coordsOfPoint(point);
        array.append(QJsonObject { { QStringLiteral("point"), QJsonArray { point.x(), point.y() } },
            { QStringLiteral("row"), orNull(coords.row) },
            { QStringLiteral("column"), orNull(coords.col) },
            { QStringLiteral("bunch"), orNull(coords.bunch) },
            { QStringLiteral("spacer"), orNull(coords.spacer) },
            { QStringLiteral("margin"), orNull(coords.margin) } });
    }
    return array;
}

QJsonObject toJson(
    const GridLayout &layout, const AppArray &array, int group, const QList<QPointF> &points)
{
    const QSizeF size = layout.viewSize();
    return { { QStringLiteral("group"), group },
        { QStringLiteral("rows"), qint64(layout.rowCount()) },
        { QStringLiteral("columns"), qint64(layout.columnCount()) },
        { QStringLiteral("bunchCount"), qint64(layout.bunchCount()) },
        { QStringLiteral("iconWidth"), qint64(layout.iconWidth()) },
        { QStringLiteral("cellWidth"), qint64(layout.cellWidth()) },
        { QStringLiteral("viewSize"), QJsonArray { size.width(), size.height() } },
        { QStringLiteral("cells"), cellsToJson(layout, array) },
        { QStringLiteral("bunchRects"), toJsonArray(layout.bunchRects()) },
        { QStringLiteral("spacerRects"), toJsonArray(layout.bunchSpacingRects()) },
        { QStringLiteral("marginRects"), toJsonArray(layout.marginRects()) },
        { QStringLiteral("at"), pointsToJson(layout, points) } };
}

QString field(const char *name, quint64 value)
{
    return value == Coords::NotFound ? QString()
                                     : QStringLiteral(" %1 %2").arg(QLatin1String(name)).arg(value);
}

QStringList toText(
    const GridLayout &layout, const AppArray &array, int group, const QList<QPointF> &points)
{
    const QSizeF size = layout.viewSize();
    QStringList lines {
        QStringLiteral("%1 %2: %3 rows, %4 columns, %5 bunches, icons of %6 points, grid %7 x %8")
            .arg(group)
            .arg(groupName(group))
            .arg(layout.rowCount())
            .arg(layout.columnCount())
            .arg(layout.bunchCount())
            .arg(layout.iconWidth())
            .arg(size.width())
            .arg(size.height()),
    };
    const AppList apps = GridInput::appsOfCells(layout, array);
    for (qsizetype place = 0; place < apps.size(); ++place) {
        if (apps[place]) {
            lines.append(QStringLiteral("  row %1 column %2  %3")
                             .arg(quint64(place) / layout.columnCount())
                             .arg(quint64(place) % layout.columnCount())
                             .arg(apps[place]->displayName()));
        }
    }
    for (const QPointF &point : points) {
        const Coords coords = layout.coordsOfPoint(point);
        const QString fields = field("row", coords.row) + field("column", coords.col)
            + field("bunch", coords.bunch) + field("spacer", coords.spacer)
            + field("margin", coords.margin);
        lines.append(QStringLiteral("at %1,%2:%3")
                         .arg(point.x())
                         .arg(point.y())
                         .arg(fields.isEmpty() ? QStringLiteral(" nothing") : fields));
    }
    return lines;
}

} // namespace

int Commands::layout(const Invocation &invocation, Desktop &desktop)
{
    OTAppManager manager(desktop,
        CatalogueSetup::isOrderByColor() ? OTAppManager::Use::Preview
                                         : OTAppManager::Use::Inspection);
    CatalogueSetup::fill(manager, -1, CatalogueSetup::Scan::OnlyWhenNothingIsSaved);
    CatalogueSetup::waitForIcons(manager);
    GridLayout layout;
    layout.setSettings(GridInput::settings());
    const int group = groupToShowConsideringModifiers(
        groupFromText(*invocation.group).value(), false, layout.settings().groupOrientation);
    const AppArray array = manager.appArrayForGroup(group);
    layout.setContents(GridInput::contents(array, group));
    layout.setMaxIconViewSize(*invocation.bounds);
    layout.calcRowColCount();
    if (invocation.rows != 0 || invocation.columns != 0) {
        layout.forceRowColCountForRows(quint64(invocation.rows), quint64(invocation.columns));
    }
    if (!invocation.isJson) {
        return Output::printLines(toText(layout, array, group, invocation.points)) ? 0 : 1;
    }
    const QJsonDocument document(toJson(layout, array, group, invocation.points));
    return Output::printJson(document) ? 0 : 1;
}
