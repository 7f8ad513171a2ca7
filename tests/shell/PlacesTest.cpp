// Where the panel lies on its screen, and the label of an icon on the panel.

#include "TestCase.h"
#include "shell/panel/PanelFrame.h"
#include "shell/selector/LabelPlace.h"

class PlacesTest : public TestCase
{
    Q_OBJECT

    static constexpr QRectF Icon { 180, 140, 48, 48 };

    static LabelPlace inPanel(qint64 orientation, const QSizeF &view = { 400, 300 })
    {
        LabelPlace place;
        place.viewSize = view;
        place.groupOrientation = orientation;
        return place;
    }

    // The hand comes from the right.
    static LabelPlace onTablet(qint64 orientation)
    {
        LabelPlace place = inPanel(orientation);
        place.tabletMode = true;
        place.tabletHandedness = 1;
        return place;
    }

    static QRectF at(qreal x, qreal y) { return { QPointF(x, y), Icon.size() }; }

private Q_SLOTS:
    void aFrameIsCentredOnWholePoints()
    {
        const QRectF square(0, 0, 100, 100);
        QCOMPARE(PanelFrame::centredOn(square, { 51, 53 }), QRectF(25, 24, 51, 53));
        // Halves go away from zero on either side of it.
        QCOMPARE(PanelFrame::centredOn(square, { 101, 103 }), QRectF(-1, -2, 101, 103));
    }

    void aFrameIsMovedNoFartherThanNeeded()
    {
        const QRectF screen(10, -800, 1000, 700);
        const auto row = [](const char *name, const QRectF &frame, const QRectF &visible,
                             const QRectF &expected) {
            QVERIFY2(PanelFrame::constrained(frame, visible) == expected, name);
        };
        row("inside", { 20.5, -790.5, 100, 50 }, screen, { 20.5, -790.5, 100, 50 });
        row("below and left", { 9, -900, 100, 50 }, screen, { 10, -800, 100, 50 });
        row("above and right", { 911, 0, 100, 50 }, screen, { 910, -150, 100, 50 });
        row("too wide", { 0, -500, 1100, 50 }, screen, { 10, -500, 1100, 50 });
        row("too tall, and right", { 950, -900, 100, 800 }, screen, { 910, -800, 100, 800 });
        row("too large", { 0, -900, 1001, 701 }, screen, {});
        row("no screen", { 5, 5, 10, 10 }, {}, {});
    }

    void aLabelStandsByItsIcon()
    {
        const auto row = [](const char *name, const LabelPlace &place, const QRectF &icon,
                             const QRectF &expected) {
            QVERIFY2(place.rectFor(icon, { 100, 17 }) == expected, name);
        };
        row("below", inPanel(0), Icon, { 154, 119, 100, 17 });
        row("at the right edge", inPanel(0), at(350, 140), { 300, 119, 100, 17 });
        row("at the left edge", inPanel(0), at(2, 140), { 0, 119, 100, 17 });
        row("no room below", inPanel(0), at(180, 20), { 154, 72, 100, 17 });
        row("no room at all", inPanel(0, { 400, 60 }), at(180, 6), { 154, 43, 100, 17 });
        row("tablet: above", onTablet(0), Icon, { 154, 192, 100, 17 });
        row("tablet: no room above", onTablet(1), at(180, 232), { 154, 211, 100, 17 });
        row("to the right", inPanel(2), Icon, { 232, 155, 100, 17 });
        row("no room to the right", inPanel(2), at(253, 140), { 227, 119, 100, 17 });
        row("in the corner", inPanel(2), at(350, 2), { 300, 54, 100, 17 });
        row("tablet: to the left of the hand", onTablet(2), Icon, { 76, 155, 100, 17 });
        row("tablet: no room to the left", onTablet(2), at(99, 140), { 73, 192, 100, 17 });
    }
};

QTEST_GUILESS_MAIN(PlacesTest)
#include "PlacesTest.moc"
