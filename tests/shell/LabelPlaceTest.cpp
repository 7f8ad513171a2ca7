#include "shell/selector/LabelPlace.h"

#include "TestCase.h"

namespace {

constexpr QRectF Icon(180, 140, 48, 48);
constexpr QSizeF Label(100, 17);

LabelPlace inPanel(qint64 orientation, const QSizeF &view = { 400, 300 })
{
    LabelPlace place;
    place.viewSize = view;
    place.groupOrientation = orientation;
    return place;
}

// The hand comes from the right, unless told otherwise.
LabelPlace onTablet(qint64 orientation, const QSizeF &view = { 400, 300 }, qint64 handedness = 1)
{
    LabelPlace place = inPanel(orientation, view);
    place.tabletMode = true;
    place.tabletHandedness = handedness;
    return place;
}

QRectF at(qreal x, qreal y)
{
    return { QPointF(x, y), Icon.size() };
}

} // namespace

class LabelPlaceTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void rectFor()
    {
        const auto row = [](const char *name, const LabelPlace &place, const QRectF &icon,
                             const QRectF &expected, const QSizeF &label = Label) {
            QVERIFY2(place.rectFor(icon, label) == expected, name);
        };
        row("below", inPanel(0), Icon, { 154, 119, 100, 17 });

        row("rounded down, then out", inPanel(0), Icon, { 153, 118, 102, 18 }, { 101.3, 17.5 });
        row("at the right edge", inPanel(0), at(350, 140), { 300, 119, 100, 17 });
        row("at the left edge", inPanel(0), at(2, 140), { 0, 119, 100, 17 });
        row("just enough room below", inPanel(0), at(180, 21), { 154, 0, 100, 17 });
        row("no room below", inPanel(0), at(180, 20), { 154, 72, 100, 17 });
        row("no room at all", inPanel(0, { 400, 60 }), at(180, 6), { 154, 43, 100, 17 });
        row("wider than the view", inPanel(0), Icon, { 0, 119, 500, 17 }, { 500, 17 });
        row("tablet: above", onTablet(0), Icon, { 154, 192, 100, 17 });
        row("tablet: just enough room above", onTablet(1), at(180, 231), { 154, 283, 100, 17 });
        row("tablet: no room above", onTablet(1), at(180, 232), { 154, 211, 100, 17 });
        row("tablet: no room at all", onTablet(0, { 400, 60 }), at(180, 6), { 154, 0, 100, 17 });
        row("to the right", inPanel(2), Icon, { 232, 155, 100, 17 });

        row("none of the gap to the right", inPanel(2), at(252, 140), { 300, 155, 100, 17 });
        row("no room to the right", inPanel(2), at(253, 140), { 227, 119, 100, 17 });
        row("in the corner", inPanel(2), at(350, 2), { 300, 54, 100, 17 });
        row("higher than its icon, at the edge", inPanel(2), { 180, 0, 9, 9 }, { 193, 0, 100, 17 });
        row("tablet: to the left of the hand", onTablet(2), Icon, { 76, 155, 100, 17 });

        row("tablet: no room to the left", onTablet(2), at(99, 140), { 73, 192, 100, 17 });
        row("tablet: hand from the left", onTablet(2, { 400, 300 }, 0), Icon,
            { 232, 155, 100, 17 });
    }
};

QTEST_APPLESS_MAIN(LabelPlaceTest)
#include "LabelPlaceTest.moc"
