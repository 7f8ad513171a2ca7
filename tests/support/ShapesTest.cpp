#include "support/Shapes.h"

#include "support/Contrast.h"

#include <QTest>

#include <cmath>

class ShapesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aTrianglePointsAndFillsItsRectangle()
    {
        const QRectF rect(10, 20, 40, 10);
        const std::pair<Pointing, QPointF> apexes[] = { { Pointing::Up, { 30, 21 } },
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
    }

    void cornersAreRound_atMostToACapsule()
    {
        const QRectF rect(0, 0, 40, 10);
        QVERIFY(!roundedRectanglePath(rect, 2).contains(QPointF(0.2, 0.2)));
        QVERIFY(roundedRectanglePath(rect, 2).contains(QPointF(2, 0.2)));
        QVERIFY(!capsulePath(rect).contains(QPointF(1, 1)));
        QVERIFY(capsulePath(rect).contains(QPointF(5, 0.2)));
        QCOMPARE(roundedRectanglePath(rect, 15), capsulePath(rect));
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
        QCOMPARE(colorFromText(QStringLiteral("#12345678")), QColor(0x12, 0x34, 0x56, 0x78));
        QCOMPARE(colorText(QColor(0x12, 0x34, 0x56, 0x78)), QStringLiteral("#12345678"));
        QCOMPARE(colorFromText(QStringLiteral("#ABCDEF")), QColor(0xab, 0xcd, 0xef));
        for (const char *text : { "red", "12345678", "#1234567", "#1234567g", "" }) {
            QVERIFY(!colorFromText(QLatin1String(text)).isValid());
        }
    }
};

QTEST_APPLESS_MAIN(ShapesTest)
#include "ShapesTest.moc"
