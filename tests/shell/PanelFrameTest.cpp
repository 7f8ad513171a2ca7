#include "shell/panel/PanelFrame.h"

#include "TestCase.h"

class PanelFrameTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void sizesFollowTheGrid_andBoundIt()
    {
        constexpr PanelMargins margins { 10, 20, 30, 40 };
        QCOMPARE(PanelFrame::sizeForGrid({ 100.4, 200.5 }, margins), QSizeF(130, 271));
        QCOMPARE(PanelFrame::maxIconViewSize({ -5, 7, 1280, 800.5 }, margins), QSizeF(1218, 698.5));
        QCOMPARE(PanelFrame::maxIconViewSize({ 0, 0, 63, 101 }, margins), QSizeF(1, 0));
    }

    void aFrameIsCentredOnWholePoints()
    {
        const QRectF square(0, 0, 100, 100);
        QCOMPARE(PanelFrame::centredOn(square, { 51, 53 }), QRectF(25, 24, 51, 53));
        // Halves go away from zero on either side of it.
        QCOMPARE(PanelFrame::centredOn(square, { 101, 103 }), QRectF(-1, -2, 101, 103));
        QCOMPARE(
            PanelFrame::centredOn({ -300, 10, 101, 40 }, { 10, 10 }), QRectF(-255, 25, 10, 10));
    }

    void aFrameIsMovedNoFartherThanNeeded()
    {
        const QRectF screen(10, -800, 1000, 700);
        const QRectF odd(10.4, -800.6, 1000, 700);
        const auto row = [](const char *name, const QRectF &frame, const QRectF &visible,
                             const QRectF &expected) {
            QVERIFY2(PanelFrame::constrained(frame, visible) == expected, name);
        };
        row("inside", { 20.5, -790.5, 100, 50 }, screen, { 20.5, -790.5, 100, 50 });
        row("below and left", { 9, -900, 100, 50 }, screen, { 10, -800, 100, 50 });
        row("above and right", { 911, 0, 100, 50 }, screen, { 910, -150, 100, 50 });
        row("low edges round up", { 0, -900, 100, 50 }, odd, { 11, -800, 100, 50 });
        row("high edges round down", { 2000, 0, 100, 50 }, odd, { 910, -151, 100, 50 });
        row("too wide", { 0, -500, 1100, 50 }, screen, { 10, -500, 1100, 50 });
        row("too tall, and right", { 950, -900, 100, 800 }, screen, { 910, -800, 100, 800 });
        row("too large", { 0, -900, 1001, 701 }, screen, {});
        row("no screen", { 5, 5, 10, 10 }, {}, {});
    }

    void moreThan16PointsAreAway()
    {
        const QRectF visible(0, -800, 1280, 770);
        const QRectF centred(540, -465, 200, 100);
        for (const QPointF &way : { QPointF(1, 0), QPointF(0, -1) }) {
            QVERIFY(!PanelFrame::isAwayFromCentre(centred.translated(way * 16), visible));
            QVERIFY(PanelFrame::isAwayFromCentre(centred.translated(way * 16.5), visible));
        }
    }

    void aChangeOfTheDiagonalTakesTime()
    {
        const QRectF small(0, 0, 30, 40);
        const QRectF large(-100, 7, 300, 400);
        QCOMPARE(PanelFrame::animationResizeTime(small, large, { 1000, 10 }), 1.29);
        QCOMPARE(PanelFrame::animationResizeTime(large, small, { 10, 1000 }), 1.29);
        QCOMPARE(PanelFrame::animationResizeTime(small, large, { 0, 0 }), 1.2);
    }
};

QTEST_GUILESS_MAIN(PanelFrameTest)
#include "PanelFrameTest.moc"
