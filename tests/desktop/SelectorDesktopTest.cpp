// The group selector on a real display: files dragged out of another program.

#include "desktop/Pointer.h"
#include "shell/PanelFixture.h"
#include "shell/selector/OTStatsControl.h"

namespace {

enum Index { Total, Included, Excluded, Favorite, Running };

} // namespace

class SelectorDesktopTest : public PanelFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        setUp();
        QTest::failOnWarning(QRegularExpression(u".?"_s));
        Pointer::move(Pointer::away);
        fill(40);
        _window->show();
        QVERIFY(QTest::qWaitForWindowActive(_window.get()));
    }
    void cleanup() { tearDown(); }

    void aDragThatRests_switches()
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

private:
    OTStatsControl &control() const { return _window->statsControl(); }
    QPoint onScreen(const QPointF &point) const { return control().mapToGlobal(point).toPoint(); }
    QPoint middleOf(int index) const { return onScreen(control().buttonRect(index).center()); }
};

QTEST_MAIN(SelectorDesktopTest)
#include "SelectorDesktopTest.moc"
