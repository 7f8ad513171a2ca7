#include "shell/PanelButton.h"

#include <QImage>
#include <QSet>
#include <QTest>

class PanelButtonTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void blackOrWhite_asTheWindowNeeds();
    void eachIsAPictureOfItsOwn();
};

void PanelButtonTest::blackOrWhite_asTheWindowNeeds()
{
    QVERIFY(needsBlackButtons(0, Qt::black));
    QVERIFY(!needsBlackButtons(0.01F, Qt::black));
    // The brightest component counts.
    QVERIFY(needsBlackButtons(1, QColor(0, 0, 187)));
    QVERIFY(!needsBlackButtons(1, QColor(186, 186, 186)));
}

void PanelButtonTest::eachIsAPictureOfItsOwn()
{
    QSet<QByteArray> shapes;
    for (const auto kind : { PanelButton::Kind::Close, PanelButton::Kind::Gear }) {
        PanelButton button(kind);
        button.setAttribute(Qt::WA_TranslucentBackground);
        for (const bool isBlack : { false, true, false }) {
            button.setIsBlack(isBlack);
            const QImage image = button.grab().toImage();
            QByteArray shape;
            for (int i = 0; i < image.width() * image.height(); ++i) {
                const QColor color = image.pixelColor(i % image.width(), i / image.width());
                const bool isInk = color.alpha() > 90;
                shape += isInk ? '#' : '.';
                QVERIFY(!isInk || (isBlack ? color.value() < 5 : color.value() > 250));
            }
            QVERIFY(shape.count('#') > 50 && shape.count('.') > 50);
            shapes.insert(shape);
        }
        const QImage resting = button.grab().toImage();
        button.setDown(true);
        QVERIFY(button.grab().toImage() != resting);
    }
    // Colours apart.
    QCOMPARE(shapes.size(), 2);
}

QTEST_MAIN(PanelButtonTest)
#include "PanelButtonTest.moc"
