#include "grid/PoofEffect.h"

#include "grid/DisappearingCursor.h"

#include <QApplication>
#include <QBitmap>
#include <QPainter>
#include <QPixmap>
#include <QProxyStyle>
#include <QRegularExpression>
#include <QTest>

namespace {

class Style : public QProxyStyle
{
public:
    int duration = 200;

    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
        QStyleHintReturn *data) const override
    {
        return hint == SH_Widget_Animation_Duration
            ? duration
            : QProxyStyle::styleHint(hint, option, widget, data);
    }
};

QList<PoofEffect *> shown()
{
    QList<PoofEffect *> puffs;
    const QWidgetList widgets = QApplication::topLevelWidgets();
    for (QWidget *widget : widgets) {
        if (auto *const puff = qobject_cast<PoofEffect *>(widget)) {
            puffs.append(puff);
        }
    }
    return puffs;
}

} // namespace

class PoofEffectTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QTest::failOnWarning(QRegularExpression(QStringLiteral(".")));
        _window = std::make_unique<QWidget>();
        _window->setStyle(&_style);
        _window->show();
        QVERIFY(QTest::qWaitForWindowActive(_window.get()));
    }
    void cleanup() { _window.reset(); }

    void thePuffFades()
    {
        const auto drawn = [](qreal moment) {
            QImage image(80, 80, QImage::Format_ARGB32_Premultiplied);
            image.fill(Qt::transparent);
            QPainter painter(&image);
            PoofEffect::draw(painter, { 40, 40 }, 40, moment);
            return image;
        };
        QVERIFY(drawn(0.5) != drawn(0.05) && drawn(0.5) != drawn(1));
        QCOMPARE(QRegion(QBitmap::fromImage(drawn(1).createAlphaMask())), QRegion());
    }

    void itIsShownForAMoment_untilItsWindowGoes()
    {
        // The offscreen display cannot put tool tips in front, and says so.
        QTest::ignoreMessage(QtWarningMsg, "This plugin does not support raise()");
        QTest::ignoreMessage(QtWarningMsg, "This plugin does not support raise()");
        PoofEffect::show({ 300, 200 }, _window.get());
        QCOMPARE(shown().size(), 1);
        const QWidget *const puff = shown().constFirst();
        QVERIFY(puff->isVisible() && puff->windowFlags().testFlag(Qt::WindowTransparentForInput));
        QCOMPARE(puff->geometry().center(), QPoint(300, 200));
        QTRY_VERIFY(shown().isEmpty());
        QVERIFY(_window->isActiveWindow());

        PoofEffect::show({ 300, 200 }, _window.get());
        QCOMPARE(shown().size(), 1);
        _window.reset();
        QVERIFY(shown().isEmpty());

        // Nor for those who want no animations.
        init();
        _style.duration = 0;
        PoofEffect::show({ 300, 200 }, _window.get());
        QVERIFY(shown().isEmpty());
    }

    void theCursorPointsWithItsTip()
    {
        for (const qreal ratio : { 1.0, 1.5, 2.0 }) {
            const QCursor cursor = disappearingItemCursor(ratio);
            const QImage image = cursor.pixmap().toImage();
            QCOMPARE(image.deviceIndependentSize(), QSizeF(32, 32));
            const auto colorAt = [&](const QPointF &fromTip) {
                return image.pixelColor(((cursor.hotSpot() + fromTip) * ratio).toPoint());
            };
            QCOMPARE(colorAt({ 2, 4 }), QColor(Qt::black));
            QCOMPARE(colorAt({ 10, 1 }).alpha(), 0);
            const QColor puff = colorAt({ 20, 20 });
            QVERIFY(puff.alpha() > 100 && puff.lightness() > 180);
        }
    }

private:
    Style _style;
    std::unique_ptr<QWidget> _window;
};

QTEST_MAIN(PoofEffectTest)

#include "PoofEffectTest.moc"
