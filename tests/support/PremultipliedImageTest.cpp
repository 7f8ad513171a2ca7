#include "support/PremultipliedImage.h"

#include <QRegularExpression>
#include <QTest>

class PremultipliedImageTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(QStringLiteral("."))); }

    void allSamples_areRoundedToNearest()
    {
        for (const int width : { 1, 7, 256 }) {
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

QTEST_APPLESS_MAIN(PremultipliedImageTest)
#include "PremultipliedImageTest.moc"
