#include "platform/freedesktop/pictures/SvgCanvas.h"

#include <QPaintEngine>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>
#include <numeric>

namespace {

// In units of some 20 ns, which is what the rasteriser takes for an outline to cross a row of
// pixels. All of it together takes half a second on an image of 128 pixels; the most that an icon
// of the known themes needs there is half of it, and nearly all need a hundredth.
constexpr double mostWork = 20'000'000;
constexpr double workOfShape = 100;
constexpr double workOfPoint = 50;
constexpr double workOfPixel = 0.1;
constexpr double workOfLetter = 1'000;
// The rows that the outline of a letter crosses, in heights of the font.
constexpr double crossingsOfLetter = 20;

// The largest factor by which a transformation makes anything longer, about.
double scaleOf(const QTransform &transform)
{
    return std::max({ std::hypot(transform.m11(), transform.m12()),
        std::hypot(transform.m21(), transform.m22()), 0.0 });
}

// In how many dashes a line of this length is drawn, in the painter's units.
double dashesOf(const QPen &pen, double length)
{
    const QList<qreal> pattern = pen.dashPattern();
    const double period =
        std::accumulate(pattern.begin(), pattern.end(), 0.0) * std::max(pen.widthF(), 1e-9);
    // Qt draws more of them as one line.
    return pattern.isEmpty() ? 0 : std::min(length / period, 10'000.0);
}

} // namespace

// Hands everything on to a painter of the image, unchanged.
class SvgCanvasEngine final : public QPaintEngine
{
public:
    explicit SvgCanvasEngine(QImage *image)
        : QPaintEngine(AllFeatures)
        , _image(image)
    { }

    // Never less than for 128 pixels.
    bool isExhausted() const
    {
        return !(_work <= mostWork * std::max(1.0, _image->width() / 128.0));
    }

    bool begin(QPaintDevice *) override { return _painter.begin(_image); }
    bool end() override { return _painter.end(); }
    Type type() const override { return User; }
    void updateState(const QPaintEngineState &now) override;

    void drawPath(const QPainterPath &path) override;
    void drawEllipse(const QRectF &rect) override;
    void drawRects(const QRectF *rects, int count) override;
    void drawLines(const QLineF *lines, int count) override;
    void drawPolygon(const QPointF *points, int count, PolygonDrawMode mode) override;
    void drawPixmap(const QRectF &rect, const QPixmap &pixmap, const QRectF &source) override;
    void drawImage(const QRectF &rect, const QImage &image, const QRectF &source,
        Qt::ImageConversionFlags flags) override;
    void drawTextItem(const QPointF &point, const QTextItem &text) override;

private:
    // Whether a shape may be drawn, whose outline has this length and so many points, in the
    // painter's units.
    bool mayDraw(double length, double points);
    bool mayDrawPolygon(const QPointF *points, int count);

    QImage *_image;
    QPainter _painter;
    double _work = 0;
};

void SvgCanvasEngine::updateState(const QPaintEngineState &now)
{
    const DirtyFlags dirty = now.state();
    if (dirty.testFlag(DirtyTransform)) {
        _painter.setTransform(now.transform());
    }
    if (dirty.testFlag(DirtyPen)) {
        _painter.setPen(now.pen());
    }
    if (dirty.testFlag(DirtyBrush)) {
        _painter.setBrush(now.brush());
    }
    if (dirty.testFlag(DirtyBrushOrigin)) {
        _painter.setBrushOrigin(now.brushOrigin());
    }
    if (dirty.testFlag(DirtyFont)) {
        _painter.setFont(now.font());
    }
    if (dirty.testFlag(DirtyClipPath)) {
        _painter.setClipPath(now.clipPath(), now.clipOperation());
    }
    if (dirty.testFlag(DirtyClipRegion)) {
        _painter.setClipRegion(now.clipRegion(), now.clipOperation());
    }
    if (dirty.testFlag(DirtyClipEnabled)) {
        _painter.setClipping(now.isClipEnabled());
    }
    if (dirty.testFlag(DirtyHints)) {
        _painter.setRenderHints(~now.renderHints(), false);
        _painter.setRenderHints(now.renderHints());
    }
    if (dirty.testFlag(DirtyCompositionMode)) {
        _painter.setCompositionMode(now.compositionMode());
    }
    if (dirty.testFlag(DirtyOpacity)) {
        _painter.setOpacity(now.opacity());
    }
}

bool SvgCanvasEngine::mayDraw(double length, double points)
{
    const double scale = scaleOf(_painter.transform());
    const double pixels = double(_image->width()) * _image->height();
    _work += workOfShape + workOfPixel * pixels + workOfPoint * points + scale * length;
    const QPen &pen = _painter.pen();
    if (pen.style() != Qt::NoPen) {
        // The line has two sides, and at every point a corner as wide as the pen.
        const double width = pen.isCosmetic() ? pen.widthF() : scale * pen.widthF();
        points += dashesOf(pen, length);
        _work += 2 * scale * length + workOfPoint * points + 3 * width * (points + 2);
    }
    return !isExhausted();
}

bool SvgCanvasEngine::mayDrawPolygon(const QPointF *points, int count)
{
    double length = 0;
    for (int i = 0; i < count; ++i) {
        const QPointF step = points[i] - points[i > 0 ? i - 1 : count - 1];
        length += std::abs(step.x()) + std::abs(step.y());
    }
    return mayDraw(length, count);
}

void SvgCanvasEngine::drawPath(const QPainterPath &path)
{
    double length = 0;
    QPointF last;
    QPointF start;
    for (int i = 0; i < path.elementCount(); ++i) {
        const QPointF point = path.elementAt(i);
        if (path.elementAt(i).isMoveTo()) {
            // Filling closes the part before.
            length += std::abs(last.x() - start.x()) + std::abs(last.y() - start.y());
            start = point;
        } else {
            length += std::abs(point.x() - last.x()) + std::abs(point.y() - last.y());
        }
        last = point;
    }
    length += std::abs(last.x() - start.x()) + std::abs(last.y() - start.y());
    if (mayDraw(length, path.elementCount())) {
        _painter.drawPath(path);
    }
}

void SvgCanvasEngine::drawEllipse(const QRectF &rect)
{
    if (mayDraw(2 * (std::abs(rect.width()) + std::abs(rect.height())), 13)) {
        _painter.drawEllipse(rect);
    }
}

void SvgCanvasEngine::drawRects(const QRectF *rects, int count)
{
    for (int i = 0; i < count; ++i) {
        if (mayDraw(2 * (std::abs(rects[i].width()) + std::abs(rects[i].height())), 4)) {
            _painter.drawRect(rects[i]);
        }
    }
}

void SvgCanvasEngine::drawLines(const QLineF *lines, int count)
{
    for (int i = 0; i < count; ++i) {
        if (mayDraw(std::abs(lines[i].dx()) + std::abs(lines[i].dy()), 2)) {
            _painter.drawLine(lines[i]);
        }
    }
}

void SvgCanvasEngine::drawPolygon(const QPointF *points, int count, PolygonDrawMode mode)
{
    if (!mayDrawPolygon(points, count)) {
        return;
    }
    switch (mode) {
    case PolylineMode:
        return _painter.drawPolyline(points, count);
    case ConvexMode:
        return _painter.drawConvexPolygon(points, count);
    case OddEvenMode:
    case WindingMode:
        return _painter.drawPolygon(
            points, count, mode == WindingMode ? Qt::WindingFill : Qt::OddEvenFill);
    }
}

void SvgCanvasEngine::drawPixmap(const QRectF &rect, const QPixmap &pixmap, const QRectF &source)
{
    _work += workOfPixel * double(pixmap.width()) * double(pixmap.height());
    if (mayDraw(0.0, 4)) {
        _painter.drawPixmap(rect, pixmap, source);
    }
}

void SvgCanvasEngine::drawImage(
    const QRectF &rect, const QImage &image, const QRectF &source, Qt::ImageConversionFlags flags)
{
    // It may be converted as a whole each time.
    _work += workOfPixel * double(image.width()) * double(image.height());
    if (mayDraw(0.0, 4)) {
        _painter.drawImage(rect, image, source, flags);
    }
}

void SvgCanvasEngine::drawTextItem(const QPointF &point, const QTextItem &text)
{
    const double letters = double(text.text().size());
    const double height = text.ascent() + text.descent();
    _work += workOfLetter * letters;
    if (mayDraw(crossingsOfLetter * letters * height, letters)) {
        _painter.drawTextItem(point, text);
    }
}

SvgCanvas::SvgCanvas(QImage *image)
    : _image(image)
    , _engine(std::make_unique<SvgCanvasEngine>(image))
{ }

SvgCanvas::~SvgCanvas() = default;

bool SvgCanvas::isExhausted() const
{
    return _engine->isExhausted();
}

QPaintEngine *SvgCanvas::paintEngine() const
{
    return _engine.get();
}

int SvgCanvas::metric(PaintDeviceMetric metric) const
{
    switch (metric) {
    case PdmWidth:
        return _image->width();
    case PdmHeight:
        return _image->height();
    case PdmWidthMM:
        return _image->widthMM();
    case PdmHeightMM:
        return _image->heightMM();
    case PdmNumColors:
        return _image->colorCount();
    case PdmDepth:
        return _image->depth();
    case PdmDpiX:
        return _image->logicalDpiX();
    case PdmDpiY:
        return _image->logicalDpiY();
    case PdmPhysicalDpiX:
        return _image->physicalDpiX();
    case PdmPhysicalDpiY:
        return _image->physicalDpiY();
    case PdmDevicePixelRatio:
        return _image->devicePixelRatio();
    case PdmDevicePixelRatioScaled:
        return int(_image->devicePixelRatioFScale());
    // Later versions of Qt ask more, and know what follows from the above.
    default:
        return QPaintDevice::metric(metric);
    }
}
