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

    static int whiteCount(const QImage &image, int y)
    {
        int count = 0;
        for (int x = 0; x < image.width(); ++x) {
            count += int(image.pixelColor(x, y) == QColor(Qt::white));
        }
        return count;
    }

private Q_SLOTS:
    // The frame of an icon of 120 x 60 begins at (10, 5) and is 100 x 50; the bar has 98 to fill.
    void bar_fillsTheFrame()
    {
        QImage plain(120, 60, QImage::Format_RGB32);
        plain.fill(Qt::blue);
        const QImage icon = IconProgress::progressIcon(plain, 1, 7);
        QVERIFY(whiteCount(icon, 4) == 0 && whiteCount(icon, 5) == 100);
        QCOMPARE(whiteCount(icon, 53), 1 + 14 + 1);
        QVERIFY(icon.pixelColor(24, 30) == Qt::white && icon.pixelColor(25, 30) == Qt::blue);
        QCOMPARE(whiteCount(IconProgress::progressIcon(plain, 9, 4), 6), 100);
    }

    void theStatusItemShowsABar()
    {
        const QImage half = OTStatusItemView::progressPicture(1'000'000'000, 2'000'000'000);
        QVERIFY(whiteCount(half, 8) == 1 + 6 + 1 && half.pixelColor(8, 8) == Qt::white);
    }

    void buttonsStandOutFromAnyWindow()
    {
        for (const char *name : { "#000000", "#ffffff", "#808080" }) {
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
    }
};

QTEST_MAIN(PicturesTest)
#include "PicturesTest.moc"
