#include "grid/drawing/PoofEffect.h"

#include "TestCase.h"
#include "grid/drawing/DisappearingCursor.h"

#include <QApplication>
#include <QPainter>
#include <QPixmap>
#include <QProxyStyle>

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

const QWidget *shown()
{
    const QWidgetList widgets = QApplication::topLevelWidgets();
    const auto puff = std::find_if(widgets.begin(), widgets.end(),
        [](const QWidget *widget) { return qobject_cast<const PoofEffect *>(widget); });
    return puff == widgets.end() ? nullptr : *puff;
}

} // namespace

class PoofEffectTest : public TestCase
{
    Q_OBJECT
private Q_SLOTS:
    void itFadesAndIsGone_atOnceWithItsWindow()
    {
        const auto drawn = [](qreal moment) {
            QImage image(80, 80, QImage::Format_ARGB32_Premultiplied);
            image.fill(Qt::transparent);
            QPainter painter(&image);
            PoofEffect::draw(painter, { 40, 40 }, 40, moment);
            return image;
        };
        QVERIFY(drawn(0.5) != drawn(0.05) && drawn(0.5) != drawn(1));
        QVERIFY(!drawn(1).createAlphaMask().pixelIndex(40, 40));

        // The offscreen display cannot put tool tips in front, and says so.
        QTest::ignoreMessage(QtWarningMsg, "This plugin does not support raise()");
        QTest::ignoreMessage(QtWarningMsg, "This plugin does not support raise()");
        Style style;
        auto window = std::make_unique<QWidget>();
        window->setStyle(&style);
        window->show();
        QVERIFY(QTest::qWaitForWindowActive(window.get()));
        PoofEffect::show({ 300, 200 }, window.get());
        QVERIFY(shown() && shown()->isVisible());
        QVERIFY(shown()->windowFlags().testFlag(Qt::WindowTransparentForInput));
        QCOMPARE(shown()->geometry().center(), QPoint(300, 200));
        QTRY_VERIFY(!shown());
        QVERIFY(window->isActiveWindow());
        // Nor for those who want no animations.
        style.duration = 0;
        PoofEffect::show({ 300, 200 }, window.get());
        QVERIFY(!shown());
        style.duration = 200;
        PoofEffect::show({ 300, 200 }, window.get());
        QVERIFY(shown());
        window.reset();
        QVERIFY(!shown());
    }

    void theCursorPointsWithItsTip()
    {
        constexpr qreal Ratio = 1.5;
        const QCursor cursor = disappearingItemCursor(Ratio);
        const QImage image = cursor.pixmap().toImage();
        QCOMPARE(image.deviceIndependentSize(), QSizeF(32, 32));
        const auto colorAt = [&](const QPointF &fromTip) {
            return image.pixelColor(((cursor.hotSpot() + fromTip) * Ratio).toPoint());
        };
        QCOMPARE(colorAt({ 2, 4 }), QColor(Qt::black));
        QCOMPARE(colorAt({ 10, 1 }).alpha(), 0);
        QVERIFY(colorAt({ 20, 20 }).alpha() > 100 && colorAt({ 20, 20 }).lightness() > 180);
    }
};

QTEST_MAIN(PoofEffectTest)
#include "PoofEffectTest.moc"
