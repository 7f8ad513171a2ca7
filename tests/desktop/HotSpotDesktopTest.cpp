// The hot spot on a real display, among windows of other programs, and drags out of those.

#include "desktop/Pointer.h"
#include "platform/freedesktop/FreedesktopDesktop.h"
#include "platform/freedesktop/input/XHotSpot.h"
#include "shell/triggers/OTHotSpotWindow.h"
#include "support/UserDefaults.h"

#include <QApplication>
#include <QScreen>
#include <QWidget>

Q_DECLARE_METATYPE(ActivationStamp)

class HotSpotDesktopTest : public TestCase
{
    Q_OBJECT

    static constexpr QRect corner { 0, 796, 4, 4 };
    static constexpr QPoint inCorner { 1, 798 };

    // For the hot spot, the window of another program that lies on the corner.
    static std::unique_ptr<QWidget> shown(Qt::WindowType flag)
    {
        auto window = std::make_unique<QWidget>(nullptr, Qt::FramelessWindowHint | flag);
        window->setGeometry(0, 500, 300, 300);
        window->show();
        [&] { QVERIFY(QTest::qWaitForWindowExposed(window.get())); }();
        return window;
    }

    static QColor pixelAt(const QPoint &point)
    {
        return QGuiApplication::primaryScreen()->grabWindow(0).toImage().pixelColor(point);
    }

private Q_SLOTS:
    void init()
    {
        TestCase::init();
        Pointer::move(Pointer::away);
        _desktop = makeFreedesktopDesktop();
        _spot = &_desktop->hotSpot();
        _entered = std::make_unique<QSignalSpy>(_spot, &HotSpot::entered);
        _left = std::make_unique<QSignalSpy>(_spot, &HotSpot::left);
    }

    void places_areTurnedIntoPixels()
    {
        QCOMPARE(XHotSpot::devicePixels({ 0, 28, 1, 744 }, { 0, 0, 1280, 800 }, 2),
            QRect(0, 56, 2, 1488));
        // A second screen, whose origin is in pixels already.
        QCOMPARE(XHotSpot::devicePixels({ 2560, 796, 4, 4 }, { 2560, 0, 1280, 800 }, 2),
            QRect(2560, 1592, 8, 9));
    }

    void thePointer_entersAndLeaves()
    {
        const QList<QPoint> places { { 0, 0 }, { 0, 400 }, { 0, 799 }, { 640, 799 }, { 1279, 799 },
            { 1279, 400 }, { 1279, 0 } };
        const QRectF frame = OTHotSpotWindow::screenFrame();
        for (int i = 0; i < places.size(); ++i) {
            const OTHotSpotWindow window(
                *_spot, OTHotSpotWindow::hotSpotRect(i + 1, frame), nullptr);
            Pointer::move(places[i]);
            expectCounts(i + 1, i);
            QVERIFY(_entered->last().first().value<ActivationStamp>().time != 0);
            Pointer::move(Pointer::away);
            expectCounts(i + 1, i + 1);
        }
    }

    void aRestingPointer_hasNotEntered()
    {
        Pointer::move(inCorner);
        QVERIFY(_spot->place(corner));
        Pointer::move(Pointer::away);
        enterCorner();
        _spot->remove();
        QCOMPARE(_left->count(), 1);
        Pointer::move(Pointer::away);
        Pointer::move(inCorner);
        expectCounts(1, 1);
    }

    void windowsAbove_doNotHideIt()
    {
        QVERIFY(_spot->place(corner));
        for (const Qt::WindowType flag :
            { Qt::WindowStaysOnTopHint, Qt::BypassWindowManagerHint }) {
            _entered->clear();
            const auto window = shown(flag);
            // It may take its time to rise: another window might insist.
            QTRY_VERIFY(
                (Pointer::move(Pointer::away), Pointer::move(inCorner), !_entered->isEmpty()));
        }
    }

    void aWindowThatComesBetween_isNoExitOfThePointer()
    {
        QVERIFY(_spot->place(corner));
        enterCorner();
        const auto window = shown(Qt::BypassWindowManagerHint);
        QCOMPARE(_left->count(), 0);
        Pointer::move(Pointer::away);
        expectCounts(1, 1);
    }

    void drags_enterWithUrlsAloneAndAreRefused()
    {
        QVERIFY(_spot->place(corner));
        for (const QStringList &types : { QStringList { u"a/a"_s, u"text/plain"_s }, {},
                 { u"a/a"_s, u"a/b"_s, u"a/c"_s, u"text/x-moz-url"_s }, { u"_NETSCAPE_URL"_s } }) {
            Pointer::Drag drag(types);
            Pointer::move({ 20, 780 });
            Pointer::move(inCorner);
            QCOMPARE(drag.drop(), QByteArray("refused"));
            Pointer::move(Pointer::away);
        }
        expectCounts(3, 3);
        QVERIFY(_entered->first().first().value<ActivationStamp>().time != 0);
    }

    void theEndOfADragsSource_isTold()
    {
        DragWatch &watch = _desktop->dragWatch();
        QSignalSpy gone(&watch, &DragWatch::sourceGone);
        QVERIFY(_spot->place(corner));
        Pointer::Drag drag;
        enterCorner();
        watch.watch();
        Pointer::move({ 20, 780 });
        QTRY_COMPARE(_left->count(), 1);
        QVERIFY(gone.isEmpty());
        drag.kill();
        QTRY_COMPARE(gone.count(), 1);
        // Before it was watched.
        watch.watch();
        watch.stop();
        watch.watch();
        QTRY_COMPARE(gone.count(), 2);
        Pointer::release();
    }

    void theWholeThing_waitsActsAndIsRed()
    {
        UserDefaults defaults;
        UserDefaults::setStandard(&defaults);
        defaults.registerDefaults(
            { { u"cursorHotSpotDelay"_s, 0.35F }, { u"highlightHotSpots"_s, true } });
        int actions = 0;
        const QRectF rect = OTHotSpotWindow::hotSpotRect(4, OTHotSpotWindow::screenFrame());
        const OTHotSpotWindow window(*_spot, rect, [&](const ActivationStamp &) { ++actions; });
        const QPoint middle(640, 799);
        const QColor before = pixelAt(middle);
        Pointer::move(middle);
        QTRY_COMPARE(pixelAt(middle), QColor(Qt::red));
        QTRY_COMPARE(actions, 1);
        // The mark takes nothing away from the spot below, and no focus.
        QVERIFY(_left->isEmpty() && !QGuiApplication::focusWindow());
        Pointer::move(Pointer::away);
        QTRY_COMPARE(pixelAt(middle), before);
        QCOMPARE(actions, 1);
    }

private:
    void enterCorner() const
    {
        Pointer::move(inCorner);
        expectCounts(1, 0);
    }
    void expectCounts(int entered, int left) const
    {
        QTRY_COMPARE(_entered->count(), entered);
        QTRY_COMPARE(_left->count(), left);
    }

    std::unique_ptr<Desktop> _desktop;
    HotSpot *_spot = nullptr;
    std::unique_ptr<QSignalSpy> _entered;
    std::unique_ptr<QSignalSpy> _left;
};

QTEST_MAIN(HotSpotDesktopTest)
#include "HotSpotDesktopTest.moc"
