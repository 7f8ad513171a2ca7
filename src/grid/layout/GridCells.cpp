#include "grid/layout/GridCells.h"

#include "catalogue/OTApp.h"
#include "grid/layout/GridInput.h"

GridCells::GridCells(const GridLayout &layout, const AppArray &array)
    : _rowCount(layout.rowCount())
    , _columnCount(layout.columnCount())
    , _apps(GridInput::appsOfCells(layout, array))
{
    for (qsizetype cell = 0; cell < _apps.size(); ++cell) {
        if (_apps[cell] && !_cellOfPath.contains(_apps[cell]->path())) {
            _cellOfPath.insert(_apps[cell]->path(), cell);
        }
    }
}

AppRef GridCells::appAtCoords(const Coords &coords) const
{
    return coords.row < _rowCount && coords.col < _columnCount
        ? _apps[qsizetype(coords.row * _columnCount + coords.col)]
        : nullptr;
}

Coords GridCells::coordsOfApp(const AppRef &app) const
{
    const auto cell = app ? _cellOfPath.constFind(app->path()) : _cellOfPath.constEnd();
    return cell == _cellOfPath.constEnd() ? Coords() : coordsOfCell(*cell);
}

QList<Coords> GridCells::occupied() const
{
    QList<Coords> cells;
    for (qsizetype cell = 0; cell < _apps.size(); ++cell) {
        if (_apps[cell]) {
            cells.append(coordsOfCell(cell));
        }
    }
    return cells;
}

Coords GridCells::coordsOfCell(qsizetype cell) const
{
    Coords coords;
    coords.row = quint64(cell) / _columnCount;
    coords.col = quint64(cell) % _columnCount;
    return coords;
}
