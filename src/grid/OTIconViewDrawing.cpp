// The part of the grid that draws.

#include "catalogue/OTApp.h"
#include "catalogue/OTAppManager.h"
#include "grid/CellLook.h"
#include "grid/OTIconView.h"
#include "icons/IconLoader.h"
#include "icons/NamedImages.h"
#include "platform/Desktop.h"
#include "support/Geometry.h"

#include <QApplication>
#include <QPaintEvent>
#include <QPainter>

#include <cmath>

namespace {

// A scan that ends sooner than this is not worth hiding the grid for, in milliseconds.
constexpr qint64 ShortestScanShown = 150;

} // namespace

void OTIconView::updateColors()
{
    _colors = GridColors::fromPreferences();
    update();
}

void OTIconView::showProgressStep(int step, int count, const QString &label)
{
    if (count < 1) {
        const bool wasShown = _isBusyScanning;
        _isBusyScanning = false;
        _scanTime.invalidate();
        _scanningStep.clear();
        _scanningLabel.clear();
        if (wasShown) {
            repaint();
        }
        return;
    }
    if (!_scanTime.isValid()) {
        _scanTime.start();
    }
    _scanningStep = tr("Scanning %1 of %2").arg(step).arg(count);
    _scanningLabel = label;
    if (_scanTime.elapsed() >= ShortestScanShown) {
        _isBusyScanning = true;
        // At once: the scan keeps the event loop from doing it.
        repaint();
    }
}

void OTIconView::setNeedsDisplayForApp(const AppRef &app)
{
    setNeedsDisplayForCoords(coordsOfApp(app));
}

void OTIconView::setNeedsDisplayForCoords(const Coords &coords)
{
    if (_layout.isValidRow(coords.row, coords.col)) {
        update(paintedRect(_layout.cellAt(coords.row, coords.col).rect));
    }
}

void OTIconView::appIconDidChange(const AppRef &app)
{
    const QRectF rect = rectOfApp(app);
    if (rect.isEmpty()) {
        return;
    }
    _dirtyCells += paintedRect(rect);
    if (!_repaintTimer.isActive()) {
        _repaintTimer.start();
    }
}

void OTIconView::repaintDirtyCells()
{
    update(_dirtyCells);
    _dirtyCells = {};
}

// Where ratios are not whole, edges are brought onto whole pixels, a little beyond the cell.
QRect OTIconView::paintedRect(const QRectF &cell) const
{
    const qreal ratio = devicePixelRatioF();
    const int beyond = ratio == std::floor(ratio) ? 0 : 1;
    return onWidget(cell).adjusted(-beyond, -beyond, beyond, beyond);
}

CellLook OTIconView::lookOf(quint64 row, quint64 column, const AppRef &app) const
{
    CellFacts facts;
    facts.hasApp = app != nullptr;
    if (!app) {
        return cellLook(facts);
    }
    facts.group = _groupShown;
    facts.isFilteredOut = isAppKeyFilteredOut(app);
    facts.isSelected = row == _selectedCoords.row && column == _selectedCoords.col;
    facts.isMouseButtonDown = _mouseDownPoint.has_value() || _isMenuPressed;
    facts.isExcluded = _excludedPaths.contains(app);
    facts.isRunning = _runningPaths.contains(app);
    facts.isFunctionKeyHeld = _modifiers.function;
    return cellLook(facts);
}

void OTIconView::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    _paintRatio = painter.deviceTransform().m11();
    GridPainter grid(painter, _layout, _colors, height());
    grid.drawBackground(rect());
    if (_isBusyScanning) {
        grid.drawScanText(rect(), _scanningStep, _scanningLabel);
        return;
    }
    drawCells(grid, event->region());
    // What the pointer is over needs no mark.
    if (_isSelectedByKeys && selectedApp()) {
        grid.drawFocus(_selectedCoords.row, _selectedCoords.col);
    }
    if (!_appsShown.isFlat()) {
        grid.drawSeparators(_selectedCoords, false);
    }
}

void OTIconView::drawCells(GridPainter &painter, const QRegion &region)
{
    for (quint64 row = 0; row < _layout.rowCount(); ++row) {
        for (quint64 column = 0; column < _layout.columnCount(); ++column) {
            const QRectF cell = _layout.cellAt(row, column).rect;
            if (cell.isEmpty() || !region.intersects(paintedRect(cell))) {
                continue;
            }
            const AppRef app = appAtCoords({ row, column });
            painter.drawCell(row, column, lookOf(row, column, app), _runningPaths.contains(app),
                app ? pictureOf(app) : QImage());
        }
    }
}

QImage OTIconView::pictureOf(const AppRef &app)
{
    const int edge = int(std::lround(qreal(_layout.iconWidth()) * _paintRatio));
    if (edge != _scaledSize) {
        _scaledIcons.clear();
        _sharpIcons.clear();
        _scaledSize = edge;
    }
    QImage icon = _showIconSpectrums ? app->spectrumIcon() : app->icon();
    if (_paintRatio > 1 && !_showIconSpectrums) {
        icon = sharpIconOf(app, icon);
    }
    if (icon.width() == edge) {
        return icon;
    }
    // Icons come anew now and then, and no signal says which of the old ones are gone.
    if (_scaledIcons.size() > 2 * _cellApps.size()) {
        _scaledIcons.clear();
    }
    QImage &scaled = _scaledIcons[icon.cacheKey()];
    if (scaled.isNull()) {
        scaled = icon.scaled(edge, edge, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    }
    return scaled;
}

// An icon is loaded in points, which is how it is measured; where a point is more than a pixel it
// is loaded once more to be drawn. Until that one has arrived, the first one.
QImage OTIconView::sharpIconOf(const AppRef &app, const QImage &icon)
{
    const qint64 key = icon.cacheKey();
    const bool isPlaceholder =
        key == NamedImages::dot().cacheKey() || key == NamedImages::notfound().cacheKey();
    if (isPlaceholder || icon.width() >= _scaledSize) {
        return icon;
    }
    const auto sharp = _sharpIcons.constFind(key);
    if (sharp != _sharpIcons.constEnd()) {
        return sharp->isNull() ? icon : *sharp;
    }
    if (_sharpIcons.size() > 2 * _cellApps.size()) {
        _sharpIcons.clear();
    }
    _sharpIcons.insert(key, {});
    const auto take = [view = QPointer(this), app, key](const LoadedIcon &loaded) {
        if (view && !loaded.image.isNull() && view->_sharpIcons.contains(key)) {
            view->_sharpIcons[key] = loaded.image;
            view->appIconDidChange(app);
        }
    };
    IconLoader::sharedIconLoader().addOperation(
        { app->path(), _scaledSize, take }, _appManager.desktop().icons());
    return icon;
}
