// Where hot spots lie, and what happens when the pointer enters one.

#include "platform/HotSpot.h"

#include "shell/ShellTest.h"
#include "shell/triggers/OTHotSpotWindow.h"
#include "support/UserDefaults.h"

#include <QGuiApplication>
#include <QScreen>

#include <limits>

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
        makeWindow(0.02F);
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
        // No room, and hardly any.
        QCOMPARE(OTHotSpotWindow::hotSpotRect(4, { 0, 0, 50, 800 }), QRectF());
        QCOMPARE(OTHotSpotWindow::hotSpotRect(2, { 0, 0, 1280, 56 }), QRectF());
        QCOMPARE(OTHotSpotWindow::hotSpotRect(6, { 0, 0, 1280, 57 }), QRectF(1279, 28, 1, 1));
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

    void oddDelays_areNoneOrEndless()
    {
        using Float = std::numeric_limits<float>;
        for (const float delay : { -1.0F, Float::quiet_NaN(), 1e9F, Float::infinity() }) {
            makeWindow(delay);
            _actions.clear();
            enter(2);
            QCoreApplication::processEvents();
            QCOMPARE(_window->view().isDelayed(), delay > 0);
            QCOMPARE(_actions.isEmpty(), delay > 0);
        }
    }

private:
    // Stored values are numbers for certain; what holds before a window is made, is not.
    void makeWindow(float delay)
    {
        _window.reset();
        _defaults->registerDefaults({ { u"cursorHotSpotDelay"_s, delay } });
        _window = std::make_unique<OTHotSpotWindow>(_spot, QRectF(0, 0, 4, 4),
            [this](const ActivationStamp &stamp) { _actions.append(stamp.time); });
    }
    void enter(quint32 time) { Q_EMIT _spot.entered({ time, {} }); }

    std::unique_ptr<UserDefaults> _defaults;
    FakeHotSpot _spot;
    std::unique_ptr<OTHotSpotWindow> _window;
    // The times of the stamps that actions came with.
    QList<quint32> _actions;
};

QTEST_MAIN(HotSpotTest)
#include "HotSpotTest.moc"
