// The background of the panel: a rounded rectangle in the colour of the window, as translucent as
// the preferences say, with a border if they want one, and otherwise an edge of one pixel that
// keeps it from running into a desktop of the same colour.
//
// It is the lowest layer: what it draws takes the place of what was there, but for the corners,
// which it leaves as they are. Where the display does not blend windows it is painted opaque, to
// the very corners, and the window is cut out with roundedMask(). Rectangles are a painter's own.

#pragma once

#include <QColor>
#include <QImage>
#include <QRegion>
#include <QStringList>
#include <QWidget>

class UserDefaults;

// What a background is drawn with; widths are in points.
struct BackgroundLook
{
    float winAlpha = 0.85F;
    QColor winColor = Qt::black;
    QColor borderColor = Qt::white;
    bool drawWindowBorder = false;
    float borderWidth = 2;
    bool isBlended = true;

    bool operator==(const BackgroundLook &) const = default;
};

class OTBkgndView : public QWidget
{
    Q_OBJECT

public:
    static constexpr qreal CornerRadius = 29;

    // Reads the preferences, and follows them.
    explicit OTBkgndView(QWidget *parent = nullptr);

    // The preferences that are followed. Those that the grid reads as well are registered there.
    static QStringList keys();
    static void registerDefaults();

    // Whether the display blends the window with what lies behind it.
    void setIsBlended(bool isBlended);
    // A colour that cannot be read gives one log line and the registered one.
    void updateColors();

    float winAlpha() const { return winAlpha_; }
    const QColor &winColor() const { return winColor_; }
    BackgroundLook look() const;

    // The shape of a window of the given size, in points.
    static QRegion roundedMask(const QSize &size);

    // Draws the part of the background that lies in `region`. The painter may be scaled and moved,
    // but not turned; edges are brought onto whole device pixels.
    static void drawBackground(
        QPainter &painter, const QRectF &rect, const BackgroundLook &look, const QRegion &region);
    // The same as a picture in a number of pixels a point.
    QImage backgroundColorPatternImageOfSize(const QSizeF &size, qreal ratio) const;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    float winAlpha_ = 0;
    QColor winColor_;
    QColor borderColor_;
    bool drawWindowBorder_ = false;
    float borderWidth_ = 2;
    bool isBlended_ = true;
    UserDefaults &userDefaults;
};
