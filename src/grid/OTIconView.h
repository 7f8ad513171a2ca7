// The grid of icons: one group of the catalogue, a cell for each application.
//
// It decides which group is shown and when it is laid out anew; GridLayout does the arithmetic.
// Whenever the grid wants another size it announces N_SubviewNeedsResizing, and its window gives it
// that size. Points and rectangles are in the view's coordinates with y growing upwards; only
// painting and mouse events turn them over.

#pragma once

#include "catalogue/AppArray.h"
#include "grid/Coords.h"
#include "grid/GridLayout.h"

#include <QHash>
#include <QImage>
#include <QRegion>
#include <QThreadPool>
#include <QTimer>
#include <QVariant>
#include <QWidget>

class GridHost;
class OTAppManager;

class OTIconView : public QWidget
{
    Q_OBJECT

public:
    enum class Resizing { WhenChanged, Forced };

    // Catalogue and host must outlive the view. Nothing is shown until setGroupToShow().
    OTIconView(OTAppManager &appManager, const GridHost &host, QWidget *parent = nullptr);
    ~OTIconView() override;

    // Registers the preferences that the grid reads. To be called once, before anything reads them.
    static void registerDefaults();

    // The group asked for, and the one shown for it; the latter is -1 while none is shown.
    int groupToShow() const { return _groupToShow; }
    int groupShown() const { return _groupShown; }
    void setGroupToShow(int group);

    // Lays the group out anew. Announces N_SubviewNeedsResizing when forced or when the counts or
    // the size of a cell have changed.
    void resizeView(Resizing resizing);
    // Reads the preferences of the layout, then lays out.
    void updateLayout();
    // Forces a number of rows, or of columns where that is 0.
    void forceRowColCountForRows(quint64 rows, quint64 orCols);

    // The size of the whole grid; of the view as it is when no application is shown.
    QSizeF viewSize() const { return _layout.viewSize(); }
    // Whether the group shown holds no application.
    bool isEmpty() const { return _cellOfPath.isEmpty(); }
    const GridLayout &gridLayout() const { return _layout; }
    QSize sizeHint() const override { return viewSize().toSize(); }

    Coords coordsOfPoint(const QPointF &point) const { return _layout.coordsOfPoint(point); }
    // Found by equality; only row and column are set.
    Coords coordsOfApp(const AppRef &app) const;
    AppRef appAtCoords(const Coords &coords) const;
    AppRef appAtPoint(const QPointF &point) const { return appAtCoords(coordsOfPoint(point)); }
    QRectF rectOfCoords(const Coords &coords) const { return _layout.rectOfCoords(coords); }
    QRectF rectOfApp(const AppRef &app) const { return rectOfCoords(coordsOfApp(app)); }

Q_SIGNALS:
    // Another list is shown than before.
    void groupShownChanged(int group);

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    void preferenceDidChange(
        const QString &key, const QVariant &oldValue, const QVariant &newValue);
    void orientationDidChange(qint64 orientation);
    void listDidChange(const QString &key);
    void appIconDidChange(const AppRef &app);
    void repaintDirtyCells();

    int mappedGroup(int group) const;
    void fillCells();
    void launch(const AppRef &app);
    void drawCell(QPainter &painter, quint64 row, quint64 column);
    QImage pictureOf(const AppRef &app);
    QRect onWidget(const QRectF &rect) const;
    QPointF inView(const QPointF &onWidget) const;

    OTAppManager &_appManager;
    const GridHost &_host;
    GridLayout _layout;
    int _groupToShow = 1;
    int _groupShown = -1;
    AppArray _appsShown;
    // The application of each cell, row by row, and the first cell of each path.
    AppList _cellApps;
    QHash<QString, qsizetype> _cellOfPath;
    // Icons in the size in which they are drawn, where that is not the size in which they were
    // loaded.
    QHash<qint64, QImage> _scaledIcons;
    int _scaledSize = 0;
    // Cells whose icons arrived since the last repaint.
    QRegion _dirtyCells;
    QTimer _repaintTimer;
    Coords _pressedCoords;
    QThreadPool _launches;
};
