// The group selector on a real display: clicks, keys, and files dragged out of another program.

#include "desktop/Pointer.h"
#include "shell/OTStatsControl.h"
#include "shell/PanelFixture.h"

using namespace Qt::Literals::StringLiterals;

namespace {

enum Index { Total, Included, Excluded, Favorite, Running };

void type(const QString &key)
{
    Pointer::use({ u"key"_s, key });
}

} // namespace

class SelectorDesktopTest : public PanelFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { tearDown(); }

    void clicks_showTheirGroups();
    void tab_goesThroughTheGroups();
    void aPressThatLeaves_isNoClick();
    void aDragThatRests_switches();
    void aDragThatMovesOn_doesNot();

private:
    OTStatsControl &control() const { return _window->statsControl(); }
    QPoint onScreen(const QPointF &point) const { return control().mapToGlobal(point).toPoint(); }
    QPoint middleOf(int index) const { return onScreen(control().buttonRect(index).center()); }
};

void SelectorDesktopTest::init()
{
    setUp();
    QTest::failOnWarning(QRegularExpression(u".?"_s));
    QCOMPARE(QGuiApplication::platformName(), u"xcb"_s);
    Pointer::move(Pointer::away);
    fill(40);
    _window->show();
    QVERIFY(QTest::qWaitForWindowActive(_window.get()));
}

void SelectorDesktopTest::clicks_showTheirGroups()
{
    for (const int index : { Running, Excluded, Total, Included }) {
        Pointer::move(middleOf(index));
        QTRY_COMPARE(control().mouseState(index), StatsButtons::MouseState::Hovered);
        Pointer::press();
        QTRY_COMPARE(control().mouseState(index), StatsButtons::MouseState::PressedInside);
        Pointer::release();
        QTRY_COMPARE(control().indexOfSelectedButton(), index);
        QCOMPARE(
            StatsButtons::groupForGroup(grid().groupShown()), control().groupForSelectedButton());
    }
}

void SelectorDesktopTest::tab_goesThroughTheGroups()
{
    for (const int index : { Running, Included, Running }) {
        type(u"Tab"_s);
        QTRY_COMPARE(control().indexOfSelectedButton(), index);
    }
    _manager->excludeApp(_manager->appForPath(pathOf(u"app3"_s)));
    QTRY_VERIFY(control().isButtonEnabled(Excluded));
    for (const int index : { Excluded, Included, Total, Running }) {
        type(u"shift+Tab"_s);
        QTRY_COMPARE(control().indexOfSelectedButton(), index);
    }
    // Tab has no other meaning here, the other keys keep theirs.
    QVERIFY(grid().filterSubstring().isEmpty());
    type(u"a"_s);
    QTRY_COMPARE(grid().filterSubstring(), u"a"_s);
}

void SelectorDesktopTest::aPressThatLeaves_isNoClick()
{
    const QPoint before = _window->pos();
    Pointer::move(middleOf(Running));
    Pointer::press();
    QTRY_COMPARE(control().mouseState(Running), StatsButtons::MouseState::PressedInside);
    Pointer::move(middleOf(Running) - QPoint(0, 40));
    QTRY_COMPARE(control().mouseState(Running), StatsButtons::MouseState::None);
    Pointer::release();
    // The next click is heard after it.
    Pointer::move(middleOf(Excluded));
    QTRY_COMPARE(control().mouseState(Excluded), StatsButtons::MouseState::Hovered);
    QCOMPARE(control().indexOfSelectedButton(), int(Included));
    QCOMPARE(_window->pos(), before);
}

void SelectorDesktopTest::aDragThatRests_switches()
{
    Pointer::Drag drag;
    Pointer::move(middleOf(Running));
    QTRY_COMPARE(grid().groupShown(), int(RunningGroup));
    // The panel has become another one under the drag, which goes on.
    Pointer::move(middleOf(Included));
    QTRY_COMPARE(grid().groupShown(), int(IncludedGroup));
    QCOMPARE(drag.drop(), "refused");
    QCOMPARE(control().groupForSelectedButton(), int(IncludedGroup));
}

void SelectorDesktopTest::aDragThatMovesOn_doesNot()
{
    const QSignalSpy groups(&grid(), &OTIconView::groupShownChanged);
    // However slow the machine is, nothing rests long enough.
    constexpr double never = 600;
    set("com.apple.springing.delay", never);
    Pointer::Drag drag;
    Pointer::move(middleOf(Excluded));
    Pointer::move(middleOf(Favorite));
    Pointer::move(middleOf(Running));
    QCOMPARE(drag.drop(), "refused");
    QCOMPARE(groups.count(), 0);
}

QTEST_MAIN(SelectorDesktopTest)
#include "SelectorDesktopTest.moc"
