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
        const std::pair<Pointing, QPointF> apexes[] { { Pointing::Up, { 30, 21 } },
            { Pointing::Down, { 30, 29 } }, { Pointing::Left, { 12, 25 } },
            { Pointing::Right, { 48, 25 } } };
        for (const auto &[pointing, apex] : apexes) {
            const QPainterPath path = trianglePath(rect, pointing);
            QCOMPARE(path.boundingRect(), rect);
            for (const auto &[other, point] : apexes) {
                // The base goes through the middle of the side across, and nothing else does.
                const bool isBase = point == rect.center() * 2 - apex;
                QCOMPARE(path.contains(point), isBase || other == pointing);
            }
        }
        QVERIFY(trianglePath({ 10, 20, 0, 10 }, Pointing::Up).isEmpty());
        // Corners are round, at most to a capsule.
        const QRectF wide(0, 0, 40, 10);
        QVERIFY(!roundedRectanglePath(wide, 2).contains(QPointF(0.2, 0.2)));
        QVERIFY(roundedRectanglePath(wide, 2).contains(QPointF(2, 0.2)));
        QVERIFY(!capsulePath(wide).contains(QPointF(1, 1)));
        QCOMPARE(roundedRectanglePath(wide, 15), capsulePath(wide));
        QVERIFY(capsulePath({ 0, 0, -1, 10 }).isEmpty());
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
        // What lies below helps.
        QVERIFY(desktop.with(grey).strengthened(grey, Qt::black).alpha() < stronger.alpha());
    }

    void colorsAreTexts()
    {
        QCOMPARE(colorFromText(u"#12345678"_s), QColor(0x12, 0x34, 0x56, 0x78));
        QCOMPARE(colorText(QColor(0x12, 0x34, 0x56, 0x78)), u"#12345678"_s);
        QCOMPARE(colorFromText(u"#ABCDEF"_s), QColor(0xab, 0xcd, 0xef));
        for (const char *text : { "red", "12345678", "#1234567", "#1234567g", "" }) {
            QVERIFY(!colorFromText(QLatin1String(text)).isValid());
        }
    }

    void allSamples_areRoundedToNearest()
    {
        for (const int width : { 1, 7 }) {
            QImage source(width, 65536 / width + 1, QImage::Format_ARGB32);
            source.fill(Qt::transparent);
            for (int i = 0; i < 65536; ++i) {
                source.setPixel(i % width, i / width, qRgba(i % 256, 255 - i % 256, 128, i / 256));
            }
            const QImage result = premultipliedImage(source);
            QCOMPARE(result.format(), QImage::Format_ARGB32_Premultiplied);
            QCOMPARE(premultipliedImage(source.convertToFormat(QImage::Format_RGBA8888)), result);
            for (int i = 0; i < 65536; ++i) {
                const int alpha = i / 256;
                const auto part = [alpha](int sample) { return (2 * sample * alpha + 255) / 510; };
                // Not pixel(), which divides by alpha again.
                const auto *line = reinterpret_cast<const QRgb *>(result.constScanLine(i / width));
                QCOMPARE(
                    line[i % width], qRgba(part(i % 256), part(255 - i % 256), part(128), alpha));
            }
        }
    }

    void whatNeedsNoMultiplying_staysAsItIs()
    {
        QImage image(3, 2, QImage::Format_ARGB32_Premultiplied);
        // More red than alpha allows, which adds light.
        image.fill(qRgba(200, 2, 3, 100));
        QCOMPARE(premultipliedImage(image).constBits(), image.constBits());
        QCOMPARE(premultipliedImage(image.convertToFormat(QImage::Format_RGBA8888_Premultiplied)),
            image);
        const QImage opaque = image.convertToFormat(QImage::Format_RGB32);
        QCOMPARE(premultipliedImage(opaque).convertToFormat(QImage::Format_RGB32), opaque);
    }
};

QTEST_APPLESS_MAIN(ShapesTest)
#include "ShapesTest.moc"
