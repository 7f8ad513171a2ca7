// What an SVG picture is drawn on: an image that keeps count of how much is drawn.
//
// The renderer draws whatever it is told to, and a line of a million pixels takes a tenth of a
// second although an icon shows nothing of it. How long a shape becomes is known only when it is
// drawn, since transformations multiply; so each is measured then, as it lies on the image, and
// once there has been too much nothing is drawn any more.

#pragma once

#include <QImage>
#include <QPaintDevice>

#include <memory>

class SvgCanvasEngine;

class SvgCanvas final : public QPaintDevice
{
public:
    // The image must outlive the canvas; only one painter may draw on it at a time.
    explicit SvgCanvas(QImage *image);
    ~SvgCanvas() override;

    // Something was left out. What the image shows is then worth nothing.
    bool isExhausted() const;

    QPaintEngine *paintEngine() const override;

protected:
    int metric(PaintDeviceMetric metric) const override;

private:
    QImage *_image;
    std::unique_ptr<SvgCanvasEngine> _engine;
};
