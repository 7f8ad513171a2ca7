#include "grid/drawing/PoofEffect.h"

#include "TestCase.h"

#include <QApplication>
#include <QProxyStyle>

namespace {

class Style : public QProxyStyle
{
public:
    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
        QStyleHintReturn *data) const override
    {
        return hint == SH_Widget_Animation_Duration
            ? 200
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
    void itIsGone_atOnceWithItsWindow()
    {
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
        QCOMPARE(shown()->geometry().center(), QPoint(300, 200));
        QCOMPARE(shown()->width(), shown()->height());
        QVERIFY(shown()->windowFlags().testFlag(Qt::WindowTransparentForInput));
        QTRY_VERIFY(!shown());
        QVERIFY(window->isActiveWindow());
        PoofEffect::show({ 300, 200 }, window.get());
        QVERIFY(shown());
        window.reset();
        QVERIFY(!shown());
    }
};

QTEST_MAIN(PoofEffectTest)
#include "PoofEffectTest.moc"
