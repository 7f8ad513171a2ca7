#include "shell/panel/PanelButton.h"

#include "TestCase.h"
#include "support/Contrast.h"

#include <QPainter>

class PanelButtonTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
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

QTEST_MAIN(PanelButtonTest)
#include "PanelButtonTest.moc"
