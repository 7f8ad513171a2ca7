// Draws what the grid shows: cells, the lines between bunches, the marks of an icon move, and the
// text that stands in for all that while applications are looked for.
//
// Rectangles are the layout's: points, y growing upwards from the lower edge of the view. Edges and
// lines are brought onto whole device pixels, whatever the device pixel ratio, so that nothing but
// corners and triangles is smoothed. What the layout does not have is not drawn.

#pragma once

#include "grid/drawing/CellLook.h"

#include <QColor>
#include <QRectF>
#include <QString>
#include <QStringList>
#include <QTransform>

class GridLayout;
class QImage;
class QPainter;
struct Coords;

// The preferences of drawing.
struct GridColors
{
    // The preferences that fromPreferences() reads.
    static QStringList keys();
    static void registerDefaults();
    // A colour that cannot be read gives one log line and the registered one. Opacities are brought
    // into 0 to 1.
    static GridColors fromPreferences();

    // Of what is drawn dimmed.
    float excludedOpacity = 0.15F;
    bool drawFilledIconHighlight = true;
    bool drawStrokedIconHighlight = false;
    // Behind running applications; its own opacity counts.
    QColor iconHighlightColor = Qt::red;
    bool markNewApplications = true;
    // A window of less opacity counts as not to be seen.
    static constexpr float leastVisibleAlpha = 0.01F;
    // Of the window that the grid stands in.
    float winAlpha = 0.85F;
    QColor winColor = Qt::black;
    // Black on a window that is not to be seen, otherwise what can be told best from its colour.
    QColor textColor = Qt::white;

    bool isWindowSeen() const { return winAlpha >= leastVisibleAlpha; }
    // What has to lie between the grid's background and a text in the text's colour;
    // transparent where the background will do.
    QColor textPlate() const;
};

// Layout and painter must outlive it. While it lives, the painter counts in device pixels and is
// not to be used for anything else; afterwards it is as it was.
class GridPainter final
{
public:
    // The painter counts in points from the upper left corner of the view.
    GridPainter(
        QPainter &painter, const GridLayout &layout, const GridColors &colors, qreal viewHeight);
    ~GridPainter();
    Q_DISABLE_COPY_MOVE(GridPainter)

    void drawBackground(const QRectF &bounds);

    // A picture with edges of std::lround(icon width * device pixel ratio) pixels is drawn pixel by
    // pixel, another one is stretched to that size; one without pixels is left out. A decorated
    // cell squeezes its picture to make room. The dot of a marked one lies on its picture, in the
    // upper right corner, the dots of one that is being started at its lower edge.
    void drawCell(
        quint64 row, quint64 column, const CellLook &look, bool isRunning, const QImage &picture);

    // Round the cell that the keyboard has selected.
    void drawFocus(quint64 row, quint64 column);

    // Lines between bunches. During a move of an icon, the gap or outer margin that `selected`
    // names is bracketed instead: dropping there would make a new bunch.
    void drawSeparators(const Coords &selected, bool isMoving);

    // For the move of an icon that is over a margin at the end of a band: the end it would go to.
    void drawBandEnd(const Coords &selected);

    // In the middle of the bounds, the label below the step; an empty label is left out, one that
    // is too long is shortened.
    void drawScanText(const QRectF &bounds, const QString &step, const QString &label);

private:
    QRectF onDevice(const QRectF &rect) const;
    // Whole pixels, at least one each way, with the edges where they come nearest.
    QRectF onPixels(const QRectF &rect) const;
    // The same for what has to have the same extent wherever it stands, such as lines.
    QRectF onPixelsOfEqualExtent(const QRectF &rect) const;
    qreal pixels(qreal length) const;

    void drawHighlight(const QRectF &cell, const QColor &color);
    void drawOutline(const QRectF &cell, const QColor &color);
    // In a corner of the icon's pixels.
    void drawMark(const QRectF &icon);
    // Three dots on a plate at the lower edge.
    void drawStartMark(const QRectF &icon);
    void drawBracket(size_t spacer);
    // Across the spacer, `at` points from the edge of the view.
    void drawLine(const QRectF &spacer, qreal at);
    void drawTextLine(const QString &text, const QRectF &bounds, qreal baseline);

    QPainter &_painter;
    const GridLayout &_layout;
    GridColors _colors;
    qreal _viewHeight;
    // From points with y growing downwards.
    QTransform _toDevice;
};
