#include "support/Shapes.h"

#include "TestCase.h"
#include "support/Contrast.h"
#include "support/PremultipliedImage.h"

#include <cmath>

class ShapesTest : public TestCase
{
    Q_OBJECT
private Q_SLOTS:
    void aTrianglePointsAndFillsItsRectangle()
    {
        const QRectF rect(10, 20, 40, 10);
        for (const auto &[pointing, apex, beside] :
            { std::tuple(Pointing::Up, QPointF(30, 21), QPointF(48, 25)),
                std::tuple(Pointing::Down, QPointF(30, 29), QPointF(48, 25)),
                std::tuple(Pointing::Left, QPointF(12, 25), QPointF(30, 21)),
                std::tuple(Pointing::Right, QPointF(48, 25), QPointF(30, 21)) }) {
            const QPainterPath path = trianglePath(rect, pointing);
            QCOMPARE(path.boundingRect(), rect);
            QVERIFY(path.contains(apex) && !path.contains(beside));
        }
        // Corners are round, at most to a capsule.
        const QRectF wide(0, 0, 40, 10);
        QVERIFY(!roundedRectanglePath(wide, 2).contains(QPointF(0.2, 0.2)));
        QVERIFY(roundedRectanglePath(wide, 2).contains(QPointF(2, 0.2)));
        QCOMPARE(roundedRectanglePath(wide, 15), capsulePath(wide));
    }

    void everyFormat_becomesTheOneOfIcons()
    {
        QImage image(1, 1, QImage::Format_ARGB32);
        image.setPixel(0, 0, qRgba(200, 100, 50, 128));
        for (const QImage::Format format : { QImage::Format_ARGB32, QImage::Format_RGBA8888,
                 QImage::Format_ARGB32_Premultiplied, QImage::Format_RGBA8888_Premultiplied }) {
            const QImage icon = premultipliedImage(image.convertToFormat(format));
            QCOMPARE(icon.format(), QImage::Format_ARGB32_Premultiplied);
            QCOMPARE(
                *reinterpret_cast<const QRgb *>(icon.constScanLine(0)), qRgba(100, 50, 25, 128));
        }
        const QImage opaque = premultipliedImage(image.convertToFormat(QImage::Format_RGB888));
        QCOMPARE(opaque.format(), QImage::Format_ARGB32_Premultiplied);
    }

    void blackOrWhite_isWhatContrastsMore()
    {
        for (const QColor &dark : { QColor(Qt::black), QColor(Qt::blue), QColor(0, 0, 60, 0) }) {
            QCOMPARE(contrastingBlackOrWhite(dark), QColor(Qt::white));
        }
        const QColor paleInAnotherModel = QColor::fromHsl(60, 255, 200);
        for (const QColor &light :
            { QColor(Qt::green), QColor(255, 255, 255, 0), paleInAnotherModel }) {
            QCOMPARE(contrastingBlackOrWhite(light), QColor(Qt::black));
        }
    }

    void aLayerIsStrengthenedAsFarAsNeeded()
    {
        QCOMPARE(Contrast::ratio(Qt::black, Qt::white), 21.0);
        QVERIFY(std::abs(Contrast::ratio(QColor(0x76, 0x76, 0x76), Qt::white) - 4.54) < 0.01);
        const Backdrop desktop;
        const QColor strong(0, 0, 0, 204);
        QCOMPARE(desktop.strengthened(strong, Qt::white), strong);
        const QColor grey(128, 128, 128, 100);
        const QColor stronger = desktop.strengthened(grey, Qt::black);
        QCOMPARE(stronger.rgb(), grey.rgb());
        QVERIFY(std::abs(desktop.with(stronger).contrast(Qt::black) - 4.55) < 0.01);
    }

    void colorsAreTexts()
    {
        QCOMPARE(colorFromText(u"#12345678"_s), QColor(0x12, 0x34, 0x56, 0x78));
        QCOMPARE(colorText(QColor(0x12, 0x34, 0x56, 0x78)), u"#12345678"_s);
        for (const QString &text : { u"red"_s, u"#1234567"_s, u"#1234567g"_s }) {
            QVERIFY(!colorFromText(text).isValid());
        }
    }

    void allSamples_areRoundedToNearest()
    {
        QImage source(256, 256, QImage::Format_ARGB32);
        for (int alpha = 0; alpha < 256; ++alpha) {
            for (int x = 0; x < 256; ++x) {
                source.setPixel(x, alpha, qRgba(x, 255 - x, 128, alpha));
            }
        }
        const QImage result = premultipliedImage(source);
        QCOMPARE(result.format(), QImage::Format_ARGB32_Premultiplied);
        for (int alpha = 0; alpha < 256; ++alpha) {
            const auto part = [alpha](int sample) { return (2 * sample * alpha + 255) / 510; };
            // Not pixel(), which divides by alpha again.
            const auto *line = reinterpret_cast<const QRgb *>(result.constScanLine(alpha));
            for (int x = 0; x < 256; ++x) {
                QCOMPARE(line[x], qRgba(part(x), part(255 - x), part(128), alpha));
            }
        }
    }
};

QTEST_APPLESS_MAIN(ShapesTest)
#include "ShapesTest.moc"
