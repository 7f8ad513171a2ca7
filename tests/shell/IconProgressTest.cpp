#include "shell/IconProgress.h"

#include "shell/ShellTest.h"

#include <QImage>

namespace {

const QColor blue(0, 0, 255);

QImage blank(const QSize &size)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(blue);
    return image;
}

// The white stretches of a row of pixels, as "first-last first-last".
QString whiteIn(const QImage &image, int y)
{
    QStringList stretches;
    int first = -1;
    for (int x = 0; x <= image.width(); ++x) {
        const bool isWhite = x < image.width() && image.pixelColor(x, y) == QColor(Qt::white);
        if (isWhite && first < 0) {
            first = x;
        } else if (!isWhite && first >= 0) {
            stretches.append(u"%1-%2"_s.arg(first).arg(x - 1));
            first = -1;
        }
    }
    return stretches.join(u' ');
}

} // namespace

class IconProgressTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { expectNoWarnings(); }

    // The frame of an icon of 120 x 60 begins at (10, 5) and is 100 x 50; the bar has 98 to fill.
    void bar_fillsTheFrame()
    {
        const auto drawn = [](int step, int count) {
            return IconProgress::progressIcon(blank({ 120, 60 }), step, count);
        };
        for (const int step : { -3, 0 }) {
            QCOMPARE(whiteIn(drawn(step, 4), 6), u"10-10 109-109"_s);
        }
        for (const int step : { 4, 9 }) {
            QCOMPARE(whiteIn(drawn(step, 4), 6), u"10-109"_s);
        }
        const QImage icon = drawn(1, 7);
        QCOMPARE(icon.size(), QSize(120, 60));
        const QStringList rows { whiteIn(icon, 4), whiteIn(icon, 5), whiteIn(icon, 6),
            whiteIn(icon, 53), whiteIn(icon, 54), whiteIn(icon, 55) };
        const QString middle = u"10-24 109-109"_s;
        QCOMPARE(
            rows, QStringList({ QString(), u"10-109"_s, middle, middle, u"10-109"_s, QString() }));
        QCOMPARE(icon.pixelColor(0, 0), blue);
        QCOMPARE(icon.pixelColor(108, 30), blue);
    }

    void nothingToDraw_isNull()
    {
        QVERIFY(IconProgress::progressIcon(blank({ 24, 24 }), 0, 0).isNull());
        QVERIFY(IconProgress::progressIcon(QImage(), 1, 2).isNull());
        // Too small for a frame: no more than a point is drawn.
        QCOMPARE(IconProgress::progressIcon(blank({ 1, 1 }), 1, 1).size(), QSize(1, 1));
    }
};

QTEST_GUILESS_MAIN(IconProgressTest)
#include "IconProgressTest.moc"
