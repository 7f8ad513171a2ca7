// Which application lies in which cell of a layout.

#pragma once

#include "catalogue/AppList.h"
#include "grid/layout/Coords.h"

#include <QHash>
#include <QList>
#include <QString>

class AppArray;
class GridLayout;

class GridCells final
{
public:
    // No cells.
    GridCells() = default;
    GridCells(const GridLayout &layout, const AppArray &array);

    // Whether no cell holds an application.
    bool isEmpty() const { return _cellOfPath.isEmpty(); }
    qsizetype count() const { return _apps.size(); }
    // Null for an empty cell and outside the grid.
    AppRef appAtCoords(const Coords &coords) const;
    // The first cell with the application's path; only row and column are set. Empty for an
    // application that is not shown and for null.
    Coords coordsOfApp(const AppRef &app) const;
    // The cells that hold an application, row by row.
    QList<Coords> occupied() const;

    // Whether the same applications follow each other in the same cells.
    bool operator==(const GridCells &other) const { return _apps == other._apps; }

private:
    Coords coordsOfCell(qsizetype cell) const;

    quint64 _rowCount = 0;
    quint64 _columnCount = 0;
    // Row by row.
    AppList _apps;
    QHash<QString, qsizetype> _cellOfPath;
};
