// The group selector on a real display: files dragged out of another program.

#include "desktop/Pointer.h"
#include "shell/PanelFixture.h"
#include "shell/selector/OTStatsControl.h"

class SelectorDesktopTest : public PanelFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void aDragThatRests_switches()
    {
        Pointer::move(Pointer::away);
        fill(40);
        _window->show();
        QVERIFY(QTest::qWaitForWindowActive(_window.get()));
        const OTStatsControl &control = _window->statsControl();
        const auto moveTo = [&control](int index) {
            Pointer::move(control.mapToGlobal(control.buttonRect(index).center()).toPoint());
        };
        Pointer::Drag drag;
        moveTo(4);
        QTRY_COMPARE(grid().groupShown(), int(RunningGroup));
        // The panel has become another one under the drag, which goes on.
        moveTo(1);
        QTRY_COMPARE(grid().groupShown(), int(IncludedGroup));
        QCOMPARE(drag.drop(), "refused");
        QCOMPARE(control.groupForSelectedButton(), int(IncludedGroup));
    }
};

QTEST_MAIN(SelectorDesktopTest)
#include "SelectorDesktopTest.moc"
