// Where hot spots lie, and what the pointer in one of them comes to.

#include "platform/HotSpot.h"

#include "shell/OTHotSpotWindow.h"
#include "support/UserDefaults.h"

#include <QGuiApplication>
#include <QRegularExpression>
#include <QScreen>
#include <QTest>

#include <limits>
#include <memory>

using namespace Qt::Literals::StringLiterals;

namespace {

class FakeHotSpot final : public HotSpot
{
public:
    bool place(const QRect &area) override
    {
        placed = area;
        return isGranted;
    }
    void remove() override { placed = {}; }

    bool isGranted = true;
    QRect placed;
};

} // namespace

class HotSpotTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void eachLocation_hasItsPlace_data();
    void eachLocation_hasItsPlace();
    void aPlace_isTurnedOverForTheDesktop();
    void noPlace_isNotAskedFor();
    void aRefusedPlace_isLeftAlone();
    void entering_actsAfterTheDelay();
    void enteringAgain_startsTheDelayAnew();
    void leaving_forgetsTheAction();
    void aDelayThatIsNone_actsAtOnce_data();
    void aDelayThatIsNone_actsAtOnce();
    void aChangedDelay_holdsFromTheNextEntrance();
    void anEndlessDelay_isWaitedFor_data();
    void anEndlessDelay_isWaitedFor();
    void theMark_isShownIfWanted();

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

void HotSpotTest::init()
{
    // The display that is not there remarks on windows that come up.
    QTest::failOnWarning(QRegularExpression(u"^(?!This plugin does not support )"_s));
    _defaults = std::make_unique<UserDefaults>();
    UserDefaults::setStandard(_defaults.get());
    _defaults->registerDefaults({ { u"highlightHotSpots"_s, false } });
    _actions.clear();
    _spot.isGranted = true;
    makeWindow(0.02F);
}

void HotSpotTest::cleanup()
{
    _window.reset();
    QVERIFY(_spot.placed.isNull());
    UserDefaults::setStandard(nullptr);
}

void HotSpotTest::eachLocation_hasItsPlace_data()
{
    QTest::addColumn<int>("location");
    QTest::addColumn<QRectF>("frame");
    QTest::addColumn<QRectF>("rect");

    const QRectF frame(100, -50, 1280, 800);
    QTest::newRow("none") << 0 << frame << QRectF();
    QTest::newRow("upper left") << 1 << frame << QRectF(100, 746, 4, 4);
    QTest::newRow("left") << 2 << frame << QRectF(100, -22, 1, 744);
    QTest::newRow("lower left") << 3 << frame << QRectF(100, -50, 4, 4);
    QTest::newRow("bottom") << 4 << frame << QRectF(128, -50, 1224, 1);
    QTest::newRow("lower right") << 5 << frame << QRectF(1376, -50, 4, 4);
    QTest::newRow("right") << 6 << frame << QRectF(1379, -22, 1, 744);
    QTest::newRow("upper right") << 7 << frame << QRectF(1376, 746, 4, 4);
    QTest::newRow("unknown") << 8 << frame << QRectF(1376, 746, 4, 4);
    QTest::newRow("negative") << -1 << frame << QRectF(1376, 746, 4, 4);
    QTest::newRow("no room at the bottom") << 4 << QRectF(0, 0, 50, 800) << QRectF();
    QTest::newRow("no room at the side") << 2 << QRectF(0, 0, 1280, 56) << QRectF();
    QTest::newRow("hardly any room") << 6 << QRectF(0, 0, 1280, 57) << QRectF(1279, 28, 1, 1);
}

void HotSpotTest::eachLocation_hasItsPlace()
{
    QFETCH(int, location);
    QFETCH(QRectF, frame);
    QTEST(OTHotSpotWindow::hotSpotRect(location, frame), "rect");
}

void HotSpotTest::aPlace_isTurnedOverForTheDesktop()
{
    const QSize screen = QGuiApplication::primaryScreen()->size();
    const QRectF frame = OTHotSpotWindow::screenFrame();
    QCOMPARE(frame, QRectF(QPointF(0, 0), screen));
    QCOMPARE(_spot.placed, QRect(0, screen.height() - 4, 4, 4));
    _window.reset();
    _window =
        std::make_unique<OTHotSpotWindow>(_spot, OTHotSpotWindow::hotSpotRect(7, frame), nullptr);
    QCOMPARE(_spot.placed, QRect(screen.width() - 4, 0, 4, 4));
    // Without an action there is nothing to do.
    _window->view().performAction();
}

void HotSpotTest::noPlace_isNotAskedFor()
{
    _window.reset();
    _window = std::make_unique<OTHotSpotWindow>(_spot, QRectF(), nullptr);
    QVERIFY(!_window->isPlaced());
    QVERIFY(_spot.placed.isNull());
}

void HotSpotTest::aRefusedPlace_isLeftAlone()
{
    _window.reset();
    _spot.isGranted = false;
    _window = std::make_unique<OTHotSpotWindow>(_spot, QRectF(0, 0, 4, 4), nullptr);
    QVERIFY(!_window->isPlaced());
    _spot.placed = {};
}

void HotSpotTest::entering_actsAfterTheDelay()
{
    enter(7);
    QVERIFY(_window->view().isDelayed());
    QVERIFY(_actions.isEmpty());
    QTRY_COMPARE(_actions, QList<quint32> { 7 });
    QVERIFY(!_window->view().isDelayed());
}

void HotSpotTest::enteringAgain_startsTheDelayAnew()
{
    enter(7);
    enter(8);
    QTRY_VERIFY(!_window->view().isDelayed());
    QCOMPARE(_actions, QList<quint32> { 8 });
}

void HotSpotTest::leaving_forgetsTheAction()
{
    enter(7);
    Q_EMIT _spot.left();
    QVERIFY(!_window->view().isDelayed());
    enter(9);
    QTRY_COMPARE(_actions, QList<quint32> { 9 });
}

void HotSpotTest::aDelayThatIsNone_actsAtOnce_data()
{
    QTest::addColumn<float>("delay");

    QTest::newRow("none") << 0.0F;
    QTest::newRow("negative") << -1.0F;
    QTest::newRow("not a number") << std::numeric_limits<float>::quiet_NaN();
}

void HotSpotTest::aDelayThatIsNone_actsAtOnce()
{
    QFETCH(float, delay);
    makeWindow(delay);
    enter(2);
    QCOMPARE(_actions, QList<quint32> { 2 });
    QVERIFY(!_window->view().isDelayed());
}

void HotSpotTest::aChangedDelay_holdsFromTheNextEntrance()
{
    enter(1);
    _defaults->setObject(u"cursorHotSpotDelay"_s, 0.0F);
    QVERIFY(_window->view().isDelayed());
    enter(2);
    QCOMPARE(_actions, QList<quint32> { 2 });
    QVERIFY(!_window->view().isDelayed());
}

void HotSpotTest::anEndlessDelay_isWaitedFor_data()
{
    QTest::addColumn<float>("delay");

    QTest::newRow("longer than a timer runs") << 1e9F;
    QTest::newRow("infinite") << std::numeric_limits<float>::infinity();
}

void HotSpotTest::anEndlessDelay_isWaitedFor()
{
    QFETCH(float, delay);
    makeWindow(delay);
    enter(1);
    QCoreApplication::processEvents();
    QVERIFY(_window->view().isDelayed());
    QVERIFY(_actions.isEmpty());
}

void HotSpotTest::theMark_isShownIfWanted()
{
    OTHotSpotView &mark = _window->view();
    enter(1);
    QVERIFY(!mark.isVisible());
    _defaults->setObject(u"highlightHotSpots"_s, true);
    enter(2);
    QVERIFY(mark.isVisible());
    QCOMPARE(mark.geometry(), _spot.placed);
    QCOMPARE(mark.grab().toImage().pixelColor(1, 1), QColor(Qt::red));
    Q_EMIT _spot.left();
    QVERIFY(!mark.isVisible());
    enter(3);
    _defaults->setObject(u"highlightHotSpots"_s, false);
    QVERIFY(!mark.isVisible());
}

QTEST_MAIN(HotSpotTest)

#include "HotSpotTest.moc"
