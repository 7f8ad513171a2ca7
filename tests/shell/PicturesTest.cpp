// What is drawn by hand: progress, and the buttons of the panel.

#include "TestCase.h"
#include "shell/IconProgress.h"
#include "shell/panel/PanelButton.h"
#include "shell/triggers/OTStatusItemView.h"
#include "support/Contrast.h"

#include <QPainter>

class PicturesTest : public TestCase
{
    Q_OBJECT

    static QImage drawn(const QSize &size, int step, int count)
    {
        QImage image(size, QImage::Format_RGB32);
        image.fill(Qt::blue);
        return IconProgress::progressIcon(image, step, count);
    }

    // The white stretches of a row of pixels, as "first-last first-last".
    static QString whiteIn(const QImage &image, int y)
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

private Q_SLOTS:
    // The frame of an icon of 120 x 60 begins at (10, 5) and is 100 x 50; the bar has 98 to fill.
    void bar_fillsTheFrame()
    {
        QCOMPARE(whiteIn(drawn({ 120, 60 }, -3, 4), 6), u"10-10 109-109"_s);
        QCOMPARE(whiteIn(drawn({ 120, 60 }, 9, 4), 6), u"10-109"_s);
        const QImage icon = drawn({ 120, 60 }, 1, 7);
        QCOMPARE(whiteIn(icon, 4), QString());
        QCOMPARE(whiteIn(icon, 5), u"10-109"_s);
        QCOMPARE(whiteIn(icon, 53), u"10-24 109-109"_s);
        QCOMPARE(whiteIn(icon, 54), u"10-109"_s);
        QCOMPARE(icon.pixelColor(108, 30), QColor(Qt::blue));
        QVERIFY(drawn({ 24, 24 }, 0, 0).isNull() && drawn({}, 1, 2).isNull());
        // Too small for a frame: no more than a point is drawn.
        QCOMPARE(drawn({ 1, 1 }, 1, 1).size(), QSize(1, 1));
    }

    void theStatusItemShowsABar()
    {
        const auto bar = [](int step, int count) {
            return whiteIn(OTStatusItemView::progressPicture(step, count), 8);
        };
        QCOMPARE(bar(-9, 4), u"0-0 2-13 15-15"_s);
        QCOMPARE(bar(1'000'000'000, 2'000'000'000), u"0-0 8-13 15-15"_s);
        QCOMPARE(bar(9, 4), u"0-0 15-15"_s);
        QVERIFY(OTStatusItemView::progressPicture(0, 0).isNull());
    }

    void buttonsStandOutFromAnyWindow()
    {
        for (const char *name : { "#000000", "#ffffff", "#808080", "#ff0000", "#008000" }) {
            for (const float alpha : { 0.0F, 0.3F, 0.85F, 1.0F }) {
                QColor window = QColor::fromString(QLatin1String(name));
                PanelButton button(PanelButton::Kind::Gear);
                button.setAttribute(Qt::WA_TranslucentBackground);
                button.setLook(PanelButtonLook(alpha, window));
                window.setAlphaF(alpha);
                for (const auto desktop : { Qt::black, Qt::darkGray, Qt::white }) {
                    QImage seen(button.size(), QImage::Format_RGB32);
                    seen.fill(desktop);
                    QPainter(&seen).fillRect(seen.rect(), window);
                    button.render(&seen, {}, {}, QWidget::DrawChildren);
                    // On a tooth, and in the hole.
                    const double contrast =
                        Contrast::ratio(seen.pixelColor(9, 4), seen.pixelColor(9, 9));
                    QVERIFY2(contrast >= Contrast::Enough, name);
                }
            }
        }
        // Where the window does by itself, nothing lies behind a button.
        QCOMPARE(PanelButtonLook(0.85F, Qt::black).plate.alpha(), 0);
    }

    void eachButtonIsAPictureOfItsOwn()
    {
        PanelButton close(PanelButton::Kind::Close);
        PanelButton gear(PanelButton::Kind::Gear);
        const QImage resting = gear.grab().toImage();
        QVERIFY(resting != close.grab().toImage());
        gear.setDown(true);
        QVERIFY(resting != gear.grab().toImage());
    }
};

QTEST_MAIN(PicturesTest)
#include "PicturesTest.moc"
