// Where hot spots lie, and what happens when the pointer enters one.

#include "platform/HotSpot.h"

#include "shell/ShellTest.h"
#include "shell/triggers/OTHotSpotWindow.h"
#include "support/UserDefaults.h"

#include <QGuiApplication>
#include <QScreen>

class HotSpotTest : public TestCase
{
    Q_OBJECT

    struct FakeHotSpot final : HotSpot
    {
        bool place(const QRect &area) override
        {
            placed = area;
            return true;
        }
        void remove() override { placed = {}; }
        QRect placed;
    };

private Q_SLOTS:
    void init()
    {
        expectNoWarnings();
        _defaults = std::make_unique<UserDefaults>();
        UserDefaults::setStandard(_defaults.get());
        _defaults->registerDefaults({ { u"highlightHotSpots"_s, false } });
        _actions.clear();
        _defaults->registerDefaults({ { u"cursorHotSpotDelay"_s, 0.02F } });
        _window = std::make_unique<OTHotSpotWindow>(_spot, QRectF(0, 0, 4, 4),
            [this](const ActivationStamp &stamp) { _actions.append(stamp.time); });
    }
    void cleanup()
    {
        _window.reset();
        QVERIFY(_spot.placed.isNull());
        UserDefaults::setStandard(nullptr);
    }

    void eachLocation_hasItsPlace()
    {
        const QRectF frame(100, -50, 1280, 800);
        const QRectF corner(1376, 746, 4, 4);
        const QList<QRectF> places { {}, { 100, 746, 4, 4 }, { 100, -22, 1, 744 },
            { 100, -50, 4, 4 }, { 128, -50, 1224, 1 }, { 1376, -50, 4, 4 }, { 1379, -22, 1, 744 },
            corner, corner };
        for (int location = 0; location < places.size(); ++location) {
            QCOMPARE(OTHotSpotWindow::hotSpotRect(location, frame), places[location]);
        }
        QCOMPARE(OTHotSpotWindow::hotSpotRect(-1, frame), corner);
    }

    void entering_actsAfterTheDelay()
    {
        enter(7);
        QVERIFY(_window->view().isDelayed() && _actions.isEmpty() && !_window->view().isVisible());
        QTRY_COMPARE(_actions, QList<quint32> { 7 });
        QVERIFY(!_window->view().isDelayed());
        // The last entrance counts, and one that was left does not.
        enter(8);
        enter(9);
        QTRY_COMPARE(_actions, QList<quint32>({ 7, 9 }));
        enter(10);
        Q_EMIT _spot.left();
        QVERIFY(!_window->view().isDelayed());
        // A changed delay holds from the next entrance.
        enter(11);
        _defaults->setObject(u"cursorHotSpotDelay"_s, 0.0F);
        QVERIFY(_window->view().isDelayed());
        enter(12);
        QCOMPARE(_actions, QList<quint32>({ 7, 9, 12 }));
    }

private:
    void enter(quint32 time) { Q_EMIT _spot.entered({ time, {} }); }

    std::unique_ptr<UserDefaults> _defaults;
    FakeHotSpot _spot;
    std::unique_ptr<OTHotSpotWindow> _window;
    // The times of the stamps that actions came with.
    QList<quint32> _actions;
};

QTEST_MAIN(HotSpotTest)
#include "HotSpotTest.moc"
