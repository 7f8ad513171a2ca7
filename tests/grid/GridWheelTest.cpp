#include "grid/GridWheel.h"

#include "grid/TypeFilter.h"

#include <QPointF>
#include <QRegularExpression>
#include <QTest>

class GridWheelTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(QStringLiteral("."))); }
    void filter_decidesWhatScrollingDoes_data();
    void filter_decidesWhatScrollingDoes();
    void typing_startsTheWheelAnew();
    void swipes_changeGroups_data();
    void swipes_changeGroups();
    void gesture_goesOnInAnotherGrid();
};

namespace {

using Outcome = GridWheel::Outcome;
using Deltas = QList<QPointF>;
// How far, and how long after the one before.
using Swipes = QList<std::pair<double, double>>;

QChar letterOf(Outcome outcome)
{
    return QLatin1Char("-ac><"[int(outcome)]);
}

void typeInto(TypeFilter &filter, const QString &letters)
{
    for (const char32_t code : letters.toUcs4()) {
        filter.press(QString::fromUcs4(&code, 1), false, {}, 0);
    }
}

} // namespace

void GridWheelTest::filter_decidesWhatScrollingDoes_data()
{
    QTest::addColumn<QString>("filter");
    QTest::addColumn<qint64>("now"); // when 0 it was typed, at 1000 it is no longer fresh
    QTest::addColumn<Deltas>("deltas");
    QTest::addColumn<QString>("outcomes"); // each with the filter it leaves
    QTest::addColumn<QString>("reversed");

    const auto row = [](const char *name, const char *filter, qint64 now, const Deltas &deltas,
                         const char *outcomes, const char *reversed) {
        QTest::newRow(name) << QString::fromUtf8(filter) << now << deltas
                            << QString::fromUtf8(outcomes) << QString::fromUtf8(reversed);
    };
    const QPointF up(0, 1.2);
    const QPointF left(6, 0.5);
    row("from none, up", "", 0, { up, up }, "cz cy ", "ca cb ");
    row("from none, down", "", 0, { -up, -up }, "ca cb ", "cz cy ");
    row("past a", "b", 0, { up, up, up }, "ca c cz ", "cc cd ce ");
    row("past z", "y", 0, { -up, -up, -up }, "cz c ca ", "cx cw cv ");
    row("a line, and more", "m", 0, { { 0, 0.5 }, { 0, 0.5 }, { 0, 0.1 } }, "-m -m cl ",
        "-m -m cn ");
    row("turned back", "m", 0, { up * 0.75, up * -0.75, up * -0.75, up * -0.75 }, "-m -m -m cn ",
        "-m -m -m cl ");
    row("dead zone", "m", 0, { { 0, 1 }, { 0.00005, 0.00005 }, { 0, 0.001 } }, "-m -m cl ",
        "-m -m cn ");
    row("a digit, as far sideways", "7", 0, { { 1.2, 1.2 } }, "c ", "c ");
    row("beyond ASCII", "é", 0, { up }, "c ", "c ");
    row("several, up", "ab", 999, { up }, "-ab ", "-ab ");
    row("several, stale, up", "ab", 1000, { up }, "cz ", "ca ");
    row("several, stale, hardly up", "ab", 1000, { up / 2 }, "c ", "c ");
    row("several, left", "ab", 999, { left, left, left }, "-ab -ab -ab ", "-ab -ab -ab ");
    row("several, stale, left", "ab", 1000, { left, left, left }, "c - > ", "c - > ");
    row("one, left", "𐐨", 999, { left, left, left }, "-𐐨 -𐐨 -𐐨 ", "-𐐨 -𐐨 -𐐨 ");
    row("one, stale, left", "𐐨", 1000, { left, left, left }, "-𐐨 -𐐨 >𐐨 ", "-𐐨 -𐐨 >𐐨 ");
}

void GridWheelTest::filter_decidesWhatScrollingDoes()
{
    QFETCH(QString, filter);
    QFETCH(qint64, now);
    QFETCH(Deltas, deltas);
    for (const char *direction : { "outcomes", "reversed" }) {
        SwipeDetector detector;
        GridWheel wheel(detector);
        TypeFilter typed;
        typeInto(typed, filter);
        QString found;
        for (const QPointF &delta : deltas) {
            const bool isReversed = *direction == 'r';
            found += letterOf(wheel.scroll(delta.x(), delta.y(), 0, isReversed, typed, now));
            found += typed.string() + QLatin1Char(' ');
        }
        QTEST(found, direction);
    }
}

void GridWheelTest::typing_startsTheWheelAnew()
{
    SwipeDetector detector;
    GridWheel wheel(detector);
    TypeFilter filter;
    const auto scroll = [&](double x, double y) { return wheel.scroll(x, y, 0, false, filter, 0); };
    scroll(6, 0);
    scroll(6, 0);
    typeInto(filter, QStringLiteral("ab"));
    QCOMPARE(filter.scrollVertically(1.2, false), TypeFilter::Wheel::Announce);
    QCOMPARE(filter.scrollVertically(0.75, false), TypeFilter::Wheel::Ignored);
    scroll(0, 0.75);
    QCOMPARE(filter.scrollVertically(0.75, false), TypeFilter::Wheel::Ignored);
    filter.reset();
    QCOMPARE(scroll(0, 0.75), Outcome::Nothing);
    QVERIFY(filter.isFresh(0));
    QCOMPARE(scroll(0, 0.75), Outcome::FilterChanged);
    QVERIFY(!filter.isFresh(0));
    QCOMPARE(scroll(6, 0), Outcome::Nothing);
    QCOMPARE(scroll(6, 0), Outcome::NextGroup);
}

void GridWheelTest::swipes_changeGroups_data()
{
    QTest::addColumn<Swipes>("swipes");
    QTest::addColumn<QString>("outcomes");

    const auto row = [](const char *name, const Swipes &swipes, const char *outcomes) {
        QTest::newRow(name) << swipes << QString::fromLatin1(outcomes);
    };
    const Swipes later { { 6, 0.2 }, { 6, 0.1 }, { 6, 0.1 } };
    row("25 in one gesture", Swipes(6, { 5, 0.02 }), "--->--");
    row("25 the other way", Swipes(6, { -5, 0.02 }), "---<--");
    row("again after a pause", Swipes(6, { 5, 0.02 }) + later, "--->---->");
    row("all at once, then a pause", Swipes(6, { 5, 0 }) + later, "--->---->");
    row("a pause before it is far enough", Swipes(2, { 8, 0.02 }) + later, "---->");
    row("notches, slowly", Swipes(4, { 12, 1 }), "->->");
    row("turned", Swipes(2, { 6, 0.02 }) + Swipes(4, { -6, 0.02 }), "-----<");
    row("turned after the swipe", Swipes(3, { 6, 0.02 }) + Swipes(3, { -6, 0.02 }), "-->---");
    row("time goes back", Swipes(3, { 6, 0.1 }) + Swipes { { 6, -5 } } + later, "-->--->");
}

// A device whose events all have one time stamp is judged by when they are handled.
void GridWheelTest::swipes_changeGroups()
{
    QFETCH(Swipes, swipes);
    for (const bool hasTimeStamps : { true, false }) {
        SwipeDetector detector;
        GridWheel wheel(detector);
        TypeFilter filter;
        QString outcomes;
        double time = 100;
        for (const auto &[deltaX, seconds] : swipes) {
            time += seconds;
            outcomes += letterOf(wheel.scroll(deltaX, 0.1, hasTimeStamps ? time : 0, false, filter,
                hasTimeStamps ? 0 : qint64(time * 1000)));
        }
        QTEST(outcomes, "outcomes");
    }
}

void GridWheelTest::gesture_goesOnInAnotherGrid()
{
    GridWheel one;
    GridWheel other;
    TypeFilter filter;
    QCOMPARE(one.scroll(12, 0, 1, false, filter, 0), Outcome::Nothing);
    QCOMPARE(other.scroll(12, 0, 1.01, false, filter, 0), Outcome::NextGroup);
    QCOMPARE(one.scroll(12, 0, 1.02, false, filter, 0), Outcome::Nothing);
}

QTEST_APPLESS_MAIN(GridWheelTest)
#include "GridWheelTest.moc"
