#include "shell/OTBkgndView.h"
#include "shell/OTIconOverlayView.h"
#include "shell/OTNSAppSubclass.h"
#include "shell/PanelButton.h"
#include "shell/PanelFixture.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <limits>

using namespace Qt::Literals::StringLiterals;

namespace {

// What the panel is larger than its grid.
constexpr QSize Frame(18 + 18, 30 + 34);

// Two screens beside one another, the second with more pixels.
QByteArray screens()
{
    const auto screen = [](const QString &name, int x, int ratio) {
        return QJsonObject { { u"name"_s, name }, { u"x"_s, x }, { u"y"_s, 0 }, { u"width"_s, 800 },
            { u"height"_s, 600 }, { u"logicalDpi"_s, 96 }, { u"logicalBaseDpi"_s, 96 },
            { u"dpr"_s, ratio } };
    };
    return QJsonDocument(QJsonObject { { u"screens"_s,
                             QJsonArray { screen(u"left"_s, 0, 1), screen(u"right"_s, 800, 2) } } })
        .toJson();
}

} // namespace

class OTWindowTest : public PanelFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }
    void hiddenItLiesAtTheOrigin_shownInTheMiddle();
    void anotherGridKeepsTheCentre_onTheScreen_data();
    void anotherGridKeepsTheCentre_onTheScreen();
    void theLargestGridLeavesTheScreenAMargin();
    void aSlowResizeIsAnnouncedOnce();
    void theGroupIsChosenOnOpening_data();
    void theGroupIsChosenOnOpening();
    void closingRemembersTheGroup_andForgetsTheRest();
    void aMovedPanelIsAwayFromTheCentre_data();
    void aMovedPanelIsAwayFromTheCentre();
    void itSlidesOutOfTheWayAndBack_data();
    void itSlidesOutOfTheWayAndBack();
    void aResizeDuringASlide_lasts();
    void keysCountWhileItComes_notWhileItGoes();
    void aSummonsInAFadeOut_turnsItRound();
    void closingKeysAskToBeClosed();
    void theBackgroundMovesIt_andOpensTheMenu();
    void aMenuOverTheGridLeavesThePointerFollowed();
    void buttonsStandOutFromTheColour();
    void withoutCompositingItIsCutOut();
    void theScreenOfThePointerIsTaken();
    void aChangedOrMissingScreenCentresIt();
    void badPreferences_leaveItUsable_data();
    void badPreferences_leaveItUsable();

private:
    // Shown to the end.
    void show()
    {
        _window->show();
        QTRY_VERIFY(_window->windowOpacity() > 0.99);
        QTRY_VERIFY(_window->isActiveWindow());
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const
    {
        QTest::keyClick(_window->windowHandle(), key, modifiers);
    }
    QPoint middleOf(const QString &name) const
    {
        const QRectF cell = grid().rectOfApp(_manager->appForPath(pathOf(name)));
        return Geometry::flipped(cell, grid().height()).center().toPoint();
    }
};

void OTWindowTest::hiddenItLiesAtTheOrigin_shownInTheMiddle()
{
    fill(6);
    _window->iconView().setGroupToShow(IncludedGroup);
    const QSize grid = _window->iconView().viewSize().toSize();
    // The low corner is the origin of a y that grows upwards.
    QCOMPARE(frame(), QRect(QPoint(0, -(grid + Frame).height()), grid + Frame));

    QSignalSpy shown(_window.get(), &OTWindow::shown);
    _window->show({ .time = 1234, .startupId = {} });

    QCOMPARE(shown.size(), 1);
    QCOMPARE(_desktop->windows.lastTime, 1234U);
    QCOMPARE(frame().size(), grid + Frame);
    QCOMPARE(frame().topLeft(),
        QPoint((800 - frame().width() + 1) / 2,
            600 - frame().height() - (600 - frame().height() + 1) / 2));
    QCOMPARE(_window->iconView().geometry(), QRect(QPoint(18, 30), grid));
    QCOMPARE(_window->overlay().geometry(), _window->rect());
    QVERIFY(_window->rect().contains(_window->selectorRect()));
    QVERIFY(!_window->selectorRect().intersects(_window->iconView().geometry()));
    QVERIFY(!_window->hasBeenMoved());
}

void OTWindowTest::anotherGridKeepsTheCentre_onTheScreen_data()
{
    QTest::addColumn<QPoint>("centre");
    QTest::addColumn<bool>("isTall");
    QTest::addColumn<QRect>("expected");

    // Six icons in a row take 468 × 156 points, in a column 203 × 496: as wide as the selector's
    // short labels.
    QTest::newRow("in the middle") << QPoint(400, 300) << true << QRect(299, 52, 203, 496);
    QTest::newRow("halves up") << QPoint(401, 301) << false << QRect(167, 223, 468, 156);
    QTest::newRow("too far left") << QPoint(80, 300) << false << QRect(0, 222, 468, 156);
    QTest::newRow("too far right") << QPoint(720, 300) << false << QRect(332, 222, 468, 156);
    QTest::newRow("too far up") << QPoint(400, 200) << true << QRect(299, 0, 203, 496);
    QTest::newRow("too far down") << QPoint(400, 420) << true << QRect(299, 104, 203, 496);
}

void OTWindowTest::anotherGridKeepsTheCentre_onTheScreen()
{
    QFETCH(const QPoint, centre);
    QFETCH(const bool, isTall);
    QFETCH(const QRect, expected);
    fill(6);
    _window->show();
    grid().forceRowColCountForRows(2, 0);
    _window->move(centre - QPoint(_window->width(), _window->height()) / 2);
    const NotificationCenter &center = NotificationCenter::defaultCenter();
    const QSignalSpy will(&center, &NotificationCenter::N_WindowWillResize);
    const QSignalSpy did(&center, &NotificationCenter::N_WindowDidResize);

    grid().forceRowColCountForRows(isTall ? 0 : 1, isTall ? 1 : 0);

    QCOMPARE(frame(), expected);
    QCOMPARE(will.size(), 1);
    QCOMPARE(will[0][0].value<QObject *>(), _window.get());
    QCOMPARE(did.size(), 1);
    // What another grid announces is none of its business.
    Q_EMIT NotificationCenter::defaultCenter().N_SubviewNeedsResizing(this);
    QCOMPARE(did.size(), 1);
}

void OTWindowTest::theLargestGridLeavesTheScreenAMargin()
{
    fill(300);
    QCOMPARE(_window->maxIconViewSize(), QSizeF(800 - 36 - 32, 600 - 64 - 32));
    _window->show();
    QVERIFY(visibleFrame().adjusted(16, 16, -16, -16).contains(frame()));
    // An empty group is shown as such.
    grid().setGroupToShow(User1DGroup);
    QVERIFY(visibleFrame().contains(frame()));
    QVERIFY(frame().width() > 200 && frame().height() > 100);
}

void OTWindowTest::aSlowResizeIsAnnouncedOnce()
{
    set("animateWindowResizing", true);
    _desktop->movement.isStill = false;
    _desktop->blending.setActive(false);
    fill(6);
    show();
    grid().forceRowColCountForRows(2, 0);
    const QRect before = frame();
    const NotificationCenter &center = NotificationCenter::defaultCenter();
    QStringList announced;
    connect(&center, &NotificationCenter::N_WindowWillResize, _window.get(),
        [&] { announced.append(u"will"_s); });
    connect(&center, &NotificationCenter::N_WindowDidResize, _window.get(),
        [&] { announced.append(u"did"_s); });

    grid().forceRowColCountForRows(1, 0);
    QCOMPARE(frame(), before);
    QVERIFY(!_window->overlay().isVisible());
    QCOMPARE(announced, QStringList { u"will"_s });
    QTRY_VERIFY(frame() != before);
    // Another change in the midst of it, and the end of both by hiding.
    grid().forceRowColCountForRows(3, 0);
    QCOMPARE(announced, QStringList({ u"will"_s, u"did"_s, u"will"_s }));
    const QSize wanted = grid().viewSize().toSize() + Frame;
    _window->hide();
    QCOMPARE(announced.mid(2, 2), QStringList({ u"will"_s, u"did"_s }));
    QCOMPARE(announced.count(u"will"_s), announced.count(u"did"_s));
    QVERIFY(wanted != before.size());
    QVERIFY(!_window->overlay().isHidden());
    QVERIFY(!_window->iconView().graphicsEffect());

    // Only those who want movement get it.
    _desktop->movement.isStill = true;
    _window->show();
    grid().forceRowColCountForRows(1, 0);
    QCOMPARE(frame().size(), QSize(468, 156));
}

void OTWindowTest::theGroupIsChosenOnOpening_data()
{
    QTest::addColumn<int>("toShow");
    QTest::addColumn<int>("shownBefore");
    QTest::addColumn<int>("expected");

    QTest::newRow("the preferred one") << 6 << 8 << 6;
    QTest::newRow("running applications") << 0 << 8 << 0;
    QTest::newRow("the last one") << -1 << 8 << 8;
    QTest::newRow("the last one, of none") << -1 << -1 << 1;
}

void OTWindowTest::theGroupIsChosenOnOpening()
{
    QFETCH(const int, toShow);
    QFETCH(const int, shownBefore);
    QFETCH(const int, expected);
    set("groupToShowWhenWindowOpens", toShow);
    set("groupShownWhenWindowClosed", shownBefore);
    fill(2);

    _window->show();

    QCOMPARE(grid().groupToShow(), expected);
}

void OTWindowTest::closingRemembersTheGroup_andForgetsTheRest()
{
    fill({ u"alpha"_s, u"beta"_s });
    show();
    grid().setGroupToShow(All1DGroup);
    press(Qt::Key_B);
    press(Qt::Key_Right);
    QCOMPARE(grid().filterSubstring(), u"b"_s);
    QVERIFY(grid().appAtCoords(grid().selectedCoords()));
    set("groupShownWhenWindowClosed", 3);
    QSignalSpy hidden(_window.get(), &OTWindow::hidden);

    _window->hide();
    QVERIFY(!_window->isShown());
    QTRY_COMPARE(hidden.size(), 1);

    QCOMPARE(_defaults->integerForKey(u"groupShownWhenWindowClosed"_s), qint64(All1DGroup));
    QCOMPARE(grid().filterSubstring(), QString());
    QVERIFY(!grid().appAtCoords(grid().selectedCoords()));
    // It is hidden already.
    set("groupShownWhenWindowClosed", 3);
    _window->hide();
    QCOMPARE(_defaults->integerForKey(u"groupShownWhenWindowClosed"_s), 3);
}

void OTWindowTest::aMovedPanelIsAwayFromTheCentre_data()
{
    QTest::addColumn<QPoint>("way");
    QTest::addColumn<bool>("isMoved");

    QTest::newRow("not") << QPoint() << false;
    QTest::newRow("a little") << QPoint(15, -15) << false;
    QTest::newRow("right") << QPoint(18, 0) << true;
    QTest::newRow("up") << QPoint(0, -18) << true;
}

void OTWindowTest::aMovedPanelIsAwayFromTheCentre()
{
    QFETCH(const QPoint, way);
    QFETCH(const bool, isMoved);
    fill(4);
    show();
    const QPoint centred = frame().topLeft();

    // What a window manager does by itself does not count.
    _window->move(centred + 3 * way);
    QVERIFY(!_window->hasBeenMoved());
    dragPanelTo(centred + way);
    QCOMPARE(frame().topLeft(), centred + way);
    QCOMPARE(_window->hasBeenMoved(), isMoved);

    // The next time it comes where it belongs.
    _window->hide();
    QTRY_VERIFY(!_window->isVisible());
    _window->show();
    QCOMPARE(frame().topLeft(), centred);
}

void OTWindowTest::itSlidesOutOfTheWayAndBack_data()
{
    QTest::addColumn<bool>("isReduced");
    QTest::newRow("slowly") << false;
    QTest::newRow("at once") << true;
}

void OTWindowTest::itSlidesOutOfTheWayAndBack()
{
    QFETCH(const bool, isReduced);
    _desktop->movement.isStill = isReduced;
    fill(4);
    show();
    const QPoint centred = frame().topLeft();
    const auto comesTo = [&](const QPoint &place) {
        return isReduced ? frame().topLeft() == place
                         : QTest::qWaitFor([&] { return frame().topLeft() == place; });
    };
    const QPoint away(30, 40);
    // Nowhere to go back to.
    _window->slideBack();
    QVERIFY(comesTo(centred));
    _window->move(away);
    _window->slideToCenter();
    QCOMPARE(frame().topLeft() == centred, isReduced);
    QVERIFY(comesTo(centred));
    _window->slideBack();
    QVERIFY(comesTo(away));
    _window->slideOnscreen();
    QCOMPARE(frame().topLeft(), away);

    const QPoint outside(-20, 600 - 50);
    _window->move(outside);
    _window->slideOnscreen();
    QVERIFY(comesTo(QPoint(0, 600 - _window->height())));
    _window->slideBack();
    QVERIFY(comesTo(outside));
    // Hidden meanwhile, it has no place to go back to.
    _window->hide();
    QTRY_VERIFY(!_window->isVisible());
    _window->show();
    _window->slideBack();
    QVERIFY(comesTo(centred));
}

void OTWindowTest::aResizeDuringASlide_lasts()
{
    _desktop->movement.isStill = false;
    fill(6);
    show();
    grid().forceRowColCountForRows(2, 0);
    _window->move(0, 0);
    _window->slideToCenter();
    QTRY_VERIFY(frame().topLeft() != QPoint(0, 0));

    grid().forceRowColCountForRows(1, 0);
    QCOMPARE(frame().size(), QSize(468, 156));
    // As long as the slide would have taken.
    QElapsedTimer clock;
    clock.start();
    QTRY_VERIFY(clock.hasExpired(300));
    QCOMPARE(frame().size(), QSize(468, 156));
    QCOMPARE(frame().size(), grid().viewSize().toSize() + Frame);
}

void OTWindowTest::keysCountWhileItComes_notWhileItGoes()
{
    _desktop->movement.isStill = false;
    fill({ u"alpha"_s, u"beta"_s });
    _window->show();
    QTRY_VERIFY(_window->isActiveWindow());
    QVERIFY(_window->windowOpacity() < 0.99);
    press(Qt::Key_A);
    QCOMPARE(grid().filterSubstring(), u"a"_s);
    QTRY_VERIFY(_window->windowOpacity() > 0.99);
    QCOMPARE(grid().filterSubstring(), u"a"_s);

    _window->hide();
    QVERIFY(_window->isVisible());
    grid().resetFilterSubstring();
    press(Qt::Key_B);
    press(Qt::Key_Return);
    QInputMethodEvent composed;
    composed.setCommitString(u"b"_s);
    QCoreApplication::sendEvent(_window.get(), &composed);
    QCOMPARE(grid().filterSubstring(), QString());
    QTRY_VERIFY(!_window->isVisible());
    QCOMPARE(_desktop->launched(), QStringList());

    _window->show();
    QCoreApplication::sendEvent(_window.get(), &composed);
    QCOMPARE(grid().filterSubstring(), u"b"_s);
}

void OTWindowTest::aSummonsInAFadeOut_turnsItRound()
{
    _desktop->movement.isStill = false;
    fill({ u"alpha"_s, u"beta"_s });
    show();
    _window->move(10, 10);
    press(Qt::Key_A);
    QSignalSpy hidden(_window.get(), &OTWindow::hidden);
    _window->hide();
    QTRY_VERIFY(_window->windowOpacity() < 0.9);

    _window->show();

    QVERIFY(_window->isShown());
    QCOMPARE(grid().filterSubstring(), QString());
    QTRY_COMPARE(_window->windowOpacity(), 1.0);
    QVERIFY(_window->isVisible());
    QCOMPARE(hidden.size(), 0);
    // It had not gone, so it is where it was.
    QCOMPARE(frame().topLeft(), QPoint(10, 10));
}

void OTWindowTest::closingKeysAskToBeClosed()
{
    fill({ u"alpha"_s, u"beta"_s });
    show();
    QSignalSpy closeWanted(_window.get(), &OTWindow::closeWanted);
    press(Qt::Key_W);
    QCOMPARE(closeWanted.size(), 0);
    QCOMPARE(grid().filterSubstring(), u"w"_s);
    press(Qt::Key_W, Qt::ControlModifier);
    QCOMPARE(closeWanted.size(), 1);
    press(Qt::Key_Escape);
    QCOMPARE(grid().filterSubstring(), QString());
    QCOMPARE(closeWanted.size(), 1);
    press(Qt::Key_Escape);
    press(Qt::Key_Period, Qt::ControlModifier);
    QCOMPARE(closeWanted.size(), 3);
    QTest::mouseClick(&_window->closeButton(), Qt::LeftButton);
    QCOMPARE(closeWanted.size(), 4);
    // Whether it goes is for others to say.
    _window->close();
    QCOMPARE(closeWanted.size(), 5);
    QVERIFY(_window->isShown());
}

void OTWindowTest::theBackgroundMovesIt_andOpensTheMenu()
{
    fill(4);
    show();
    const QPoint start = frame().topLeft();
    QSignalSpy menuWanted(_window.get(), &OTWindow::menuWanted);
    QSignalSpy prefsWanted(_window.get(), &OTWindow::prefsWanted);
    const QPoint onMargin(_window->width() / 2, 8);
    QWindow *const window = _window->windowHandle();
    const auto drag = [&](const QPoint &from, const QPoint &way) {
        QTest::mousePress(window, Qt::LeftButton, {}, from);
        QTest::mouseMove(window, from + way);
        // The window has followed, and the pointer with it.
        QTest::mouseRelease(window, Qt::LeftButton, {}, from);
    };

    QTest::mousePress(window, Qt::RightButton, {}, onMargin);
    QTest::mouseRelease(window, Qt::RightButton, {}, onMargin);
    QCOMPARE(menuWanted.size(), 1);
    QCOMPARE(menuWanted[0][0].toPoint(), start + onMargin);
    QTest::mouseClick(&_window->prefsButton(), Qt::LeftButton);
    QCOMPARE(prefsWanted.size(), 1);

    drag(onMargin, { 2, 1 });
    QCOMPARE(frame().topLeft(), start);
    drag(onMargin, { 60, 40 });
    QCOMPARE(frame().topLeft(), start + QPoint(60, 40));
    // Between the icons as well.
    drag(QPoint(18 + 3, 30 + 3), { -30, 50 });
    QCOMPARE(frame().topLeft(), start + QPoint(30, 90));
    QTest::mouseMove(window, QPoint(80, 80));
    QCOMPARE(frame().topLeft(), start + QPoint(30, 90));
    drag(grid().pos() + middleOf(u"app0"_s), { 80, 0 });
    QCOMPARE(frame().topLeft(), start + QPoint(30, 90));
    QCOMPARE(menuWanted.size(), 1);
}

void OTWindowTest::aMenuOverTheGridLeavesThePointerFollowed()
{
    fill(4);
    show();
    QSignalSpy menuWanted(_window.get(), &OTWindow::menuWanted);
    // The menu takes the release.
    QTest::mousePress(_window->windowHandle(), Qt::RightButton, {}, QPoint(18 + 3, 30 + 3));
    QCOMPARE(menuWanted.size(), 1);
    const QPoint onIcon = middleOf(u"app2"_s);
    QMouseEvent moved(QEvent::MouseMove, onIcon, grid().mapToGlobal(onIcon), Qt::NoButton,
        Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&grid(), &moved);

    QCOMPARE(grid().appAtCoords(grid().selectedCoords()), _manager->appForPath(pathOf(u"app2"_s)));
}

void OTWindowTest::buttonsStandOutFromTheColour()
{
    fill(1);
    for (const auto &[color, tone] : { std::pair("#000000", "white"), std::pair("#bbbbbb", "black"),
             std::pair("#ff0000", "black"), std::pair("#0000ff", "white") }) {
        set("windowColor", QLatin1String(color));
        QCOMPARE(_window->closeButton().imageName(), u"close_button_"_s + QLatin1String(tone));
        QCOMPARE(_window->prefsButton().imageName(), u"gear_button_"_s + QLatin1String(tone));
    }
    set("windowAlpha", 0.0);
    QCOMPARE(_window->prefsButton().imageName(), u"gear_button_black"_s);
}

void OTWindowTest::withoutCompositingItIsCutOut()
{
    fill(4);
    show();
    QVERIFY(_window->mask().isEmpty());
    QVERIFY(qAlpha(_window->grab().toImage().pixel(_window->width() / 2, 3)) < 255);

    _desktop->blending.setActive(false);
    QCOMPARE(_window->mask(), OTBkgndView::roundedMask(_window->size()));
    QVERIFY(!_window->mask().contains(QPoint(0, 0)));
    QCOMPARE(qAlpha(_window->grab().toImage().pixel(_window->width() / 2, 3)), 255);
    grid().forceRowColCountForRows(1, 0);
    QCOMPARE(_window->mask(), OTBkgndView::roundedMask(_window->size()));
    // Nothing can fade.
    _desktop->movement.isStill = false;
    _window->hide();
    QVERIFY(!_window->isVisible());
    _window->show();
    QCOMPARE(_window->windowOpacity(), 1.0);

    _desktop->blending.setActive(true);
    QVERIFY(_window->mask().isEmpty());
}

void OTWindowTest::theScreenOfThePointerIsTaken()
{
    QCOMPARE(QGuiApplication::screens().size(), 2);
    QScreen *const right = QGuiApplication::screens().constLast();
    fill(4);
    QCursor::setPos(right->geometry().center());

    _window->show();

    QVERIFY(!_window->hasBeenMoved());
    QVERIFY(right->availableGeometry().contains(frame()));
    QTRY_COMPARE(_window->devicePixelRatio(), 2.0);
    // While it is there the pointer does not matter.
    const QRect there = frame();
    QCursor::setPos(QGuiApplication::primaryScreen()->geometry().center());
    _window->show();
    QCOMPARE(frame(), there);
    _window->hide();
    QTRY_VERIFY(!_window->isVisible());
    _window->show();
    QVERIFY(visibleFrame().contains(frame()));

    // Carried over by the user, it belongs there.
    dragPanelTo(there.topLeft());
    QVERIFY(right->availableGeometry().contains(frame()));
    grid().forceRowColCountForRows(1, 0);
    QVERIFY(right->availableGeometry().contains(frame()));
    QVERIFY(!_window->hasBeenMoved());
}

void OTWindowTest::aChangedOrMissingScreenCentresIt()
{
    fill(4);
    show();
    const QPoint centred = frame().topLeft();
    QScreen *const screen = QGuiApplication::primaryScreen();

    _window->move(20, 20);
    Q_EMIT screen->availableGeometryChanged(screen->availableGeometry());
    QTRY_COMPARE(frame().topLeft(), centred);
    _window->move(20, 20);
    Q_EMIT qGuiApp->screenRemoved(QGuiApplication::screens().constLast());
    QTRY_COMPARE(frame().topLeft(), centred);

    // A hidden panel has nowhere to slide to.
    _window->hide();
    QTRY_VERIFY(!_window->isVisible());
    const QRect hidden = frame();
    Q_EMIT screen->availableGeometryChanged(screen->availableGeometry());
    QCOMPARE(frame(), hidden);
}

void OTWindowTest::badPreferences_leaveItUsable_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("warning");
    QTest::addColumn<int>("lines");

    const QVariant nan(std::numeric_limits<double>::quiet_NaN());
    QTest::newRow("a colour that is none")
        << u"windowBorderColor"_s << QVariant(u"reddish"_s) << u"\"reddish\" is no colour"_s << 1;
    QTest::newRow("a colour of the wrong type")
        << u"windowColor"_s << QVariant(QVariantList { 1, 2 }) << u"windowColor"_s << 1;
    QTest::newRow("more than opaque") << u"windowAlpha"_s << QVariant(7.5) << QString() << 0;
    QTest::newRow("less than transparent") << u"windowAlpha"_s << QVariant(-3.0) << QString() << 0;
    QTest::newRow("an alpha that is no number") << u"windowAlpha"_s << nan << u"windowAlpha"_s << 1;
    QTest::newRow("an alpha of words")
        << u"windowAlpha"_s << QVariant(u"much"_s) << u"windowAlpha"_s << 1;
    QTest::newRow("a group of a later version")
        << u"groupToShowWhenWindowOpens"_s << QVariant(42) << QString() << 0;
    QTest::newRow("a group below all")
        << u"groupToShowWhenWindowOpens"_s << QVariant(-7) << QString() << 0;
    QTest::newRow("a group that is no small number")
        << u"groupToShowWhenWindowOpens"_s << QVariant(Q_INT64_C(1) << 40) << QString() << 0;
}

void OTWindowTest::badPreferences_leaveItUsable()
{
    QFETCH(const QString, key);
    QFETCH(const QVariant, value);
    QFETCH(const QString, warning);
    QFETCH(const int, lines);
    for (int i = 0; i < lines; ++i) {
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QRegularExpression::escape(warning)));
    }
    _defaults->setObject(key, value);
    fill(4);

    show();

    const QPixmap picture = _window->grab();
    QVERIFY(qAlpha(picture.toImage().pixel(grid().pos() + middleOf(u"app1"_s))) > 0);
    QVERIFY(!grid().isEmpty());
    QVERIFY(visibleFrame().contains(frame()));
    _window->hide();
    QTRY_VERIFY(!_window->isVisible());
    const int group = OTWindow::groupToShowWhenWindowOpens();
    QVERIFY2(group >= 0 && group < GroupCount, qPrintable(QString::number(group)));
}

int main(int argc, char **argv)
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(u"screens.json"_s));
    if (!file.open(QIODevice::WriteOnly) || file.write(screens()) < 0) {
        return 1;
    }
    file.close();
    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + QFile::encodeName(file.fileName()));
    OTNSAppSubclass application(argc, argv);
    OTWindowTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "OTWindowTest.moc"
