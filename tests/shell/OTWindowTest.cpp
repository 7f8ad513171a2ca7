#include "shell/OTNSAppSubclass.h"
#include "shell/PanelFixture.h"
#include "shell/base/OTBkgndView.h"
#include "shell/panel/PanelButton.h"
#include "shell/selector/OTIconOverlayView.h"
#include "shell/selector/OTStatsControl.h"

#include <QDragEnterEvent>
#include <QMimeData>
#include <QTemporaryFile>

#include <type_traits>

class OTWindowTest : public PanelFixture
{
    Q_OBJECT

    // What the panel is larger than its grid.
    static constexpr QSize Frame { 18 + 18, 30 + 34 };

public:
    // Two screens beside one another, the second with more pixels.
    static inline const QByteArray Screens = R"({ "screens": [
    { "name": "left", "x": 0, "y": 0, "width": 800, "height": 600,
      "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1 },
    { "name": "right", "x": 800, "y": 0, "width": 800, "height": 600,
      "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 2 } ] })";

private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void hiddenItLiesAtTheOrigin_shownInTheMiddle()
    {
        fill(6);
        grid().setGroupToShow(IncludedGroup);
        const QSize size = grid().viewSize().toSize() + Frame;
        // The low corner is the origin of a y that grows upwards.
        QCOMPARE(frame(), QRect(QPoint(0, -size.height()), size));
        QSignalSpy shown(_window.get(), &OTWindow::shown);
        _window->show({ .time = 1234, .startupId = {} });
        QCOMPARE(shown.size(), 1);
        QCOMPARE(_desktop->windows.lastTime, 1234U);
        QCOMPARE(
            frame(), QRect(QPoint((800 - size.width() + 1) / 2, (600 - size.height()) / 2), size));
        QCOMPARE(grid().geometry(), QRect(QPoint(18, 30), size - Frame));
        QCOMPARE(_window->overlay().geometry(), _window->rect());
        QVERIFY(_window->rect().contains(_window->selectorRect()));
        QVERIFY(!_window->selectorRect().intersects(grid().geometry()));
        QVERIFY(!_window->hasBeenMoved());
    }

    void anotherGridKeepsTheCentre_onTheScreen()
    {
        fill(6);
        _window->show();
        const NotificationCenter &center = NotificationCenter::defaultCenter();
        QSignalSpy will(&center, &NotificationCenter::N_WindowWillResize);
        const auto resized = [&](const QPoint &centre, bool isTall) {
            grid().forceRowColCountForRows(2, 0);
            _window->move(centre - QPoint(_window->width(), _window->height()) / 2);
            will.clear();
            grid().forceRowColCountForRows(isTall ? 0 : 1, isTall ? 1 : 0);
            return frame();
        };
        // Six icons take 468 × 156 points in a row. In a column they are 496 high, and as wide as
        // the selector's short labels, which Qt measures with hinting or, from 6.8 on where a
        // screen has more pixels, without.
        QCOMPARE(resized({ 401, 301 }, false), QRect(167, 223, 468, 156));
        QCOMPARE(resized({ 80, 300 }, false), QRect(0, 222, 468, 156));
        const int width = _window->leastWidth();
        QCOMPARE(resized({ 400, 420 }, true), QRect(400 - width / 2, 104, width, 496));
        QCOMPARE(_window->statsControl().geometry(), _window->selectorRect());
        QVERIFY(will.size() == 1 && will[0][0].value<QObject *>() == _window.get());
    }

    void aSlowResizeIsAnnouncedOnce()
    {
        set("animateWindowResizing", true);
        _desktop->movement.isStill = false;
        _desktop->blending.setActive(false);
        showPanelOf(6);
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
        // Ended by hiding.
        _window->hide();
        QCOMPARE(announced.mid(0, 2), QStringList({ u"will"_s, u"did"_s }));
        QCOMPARE(announced.count(u"will"_s), announced.count(u"did"_s));
        QVERIFY(!_window->overlay().isHidden() && !grid().graphicsEffect());
    }

    void theGroupIsChosenOnOpening()
    {
        const auto chosen = [this](int preferred, int shownBefore) {
            _window.reset();
            fill(2);
            set("groupToShowWhenWindowOpens", preferred);
            set("groupShownWhenWindowClosed", shownBefore);
            _window->show();
            return grid().groupToShow();
        };
        QCOMPARE(chosen(6, 8), 6);
        QCOMPARE(chosen(0, 8), 0);
        QCOMPARE(chosen(-1, 8), 8);
        QCOMPARE(chosen(-1, -1), 1);
    }

    void closingRemembersTheGroup_andForgetsTheRest()
    {
        showPanelOf(QStringList { u"alpha"_s, u"beta"_s });
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
    }

    void aMovedPanelIsAwayFromTheCentre()
    {
        showPanelOf(4);
        const QPoint centred = frame().topLeft();
        const auto isAway = [&](const QPoint &way) {
            // What a window manager does by itself does not count.
            _window->move(centred + 3 * way);
            const bool isAwayByItself = _window->hasBeenMoved();
            dragPanelTo(centred + way);
            const bool isAwayByUser = _window->hasBeenMoved();
            // The next time it comes where it belongs.
            _window->hide();
            _window->show();
            return isAwayByUser && !isAwayByItself && frame().topLeft() == centred;
        };
        QVERIFY(!isAway({}) && !isAway({ 15, -15 }) && isAway({ 18, 0 }) && isAway({ 0, -18 }));
    }

    void itSlidesOutOfTheWayAndBack()
    {
        _desktop->movement.isStill = false;
        showPanelOf(4);
        const QPoint centred = frame().topLeft();
        const auto comesTo = [&](const QPoint &place) {
            return QTest::qWaitFor([&] { return frame().topLeft() == place; });
        };
        const QPoint away(30, 40);
        _window->move(away);
        _window->slideToCenter();
        QVERIFY(frame().topLeft() != centred && comesTo(centred));
        _window->slideBack();
        QVERIFY(comesTo(away));
        const QPoint outside(-20, 600 - 50);
        _window->move(outside);
        _window->slideOnscreen();
        QVERIFY(comesTo(QPoint(0, 600 - _window->height())));
        _window->slideBack();
        QVERIFY(comesTo(outside));
        // It is back for good.
        _window->move(away);
        _window->slideBack();
        QVERIFY(comesTo(away));
        // Of another size it has another place.
        _window->move(outside);
        _window->slideOnscreen();
        QVERIFY(comesTo(QPoint(0, 600 - _window->height())));
        _window->iconView().setGroupToShow(RunningGroup);
        const QRect anew = frame();
        _desktop->movement.isStill = true;
        _window->slideBack();
        QCOMPARE(frame(), anew);
    }

    void dragsGoToTheGrid_fromAllOfThePanel()
    {
        showPanelOf(QStringList { u"txt"_s, u"png"_s });
        grid().setGroupToShow(AllGroup);
        QMimeData data;
        data.setUrls({ QUrl(u"file:///d/one.txt"_s) });
        const auto drag = [&]<typename Event>(std::type_identity<Event>, const QPoint &at,
                              Qt::DropActions actions) {
            Event event(at, actions, &data, Qt::LeftButton, {});
            QCoreApplication::sendEvent(_window.get(), &event);
            return event.isAccepted() ? event.dropAction() : Qt::IgnoreAction;
        };
        constexpr std::type_identity<QDragEnterEvent> entry;
        constexpr std::type_identity<QDragMoveEvent> move;
        constexpr std::type_identity<QDropEvent> drop;
        const Qt::DropActions all = Qt::CopyAction | Qt::MoveAction | Qt::LinkAction;
        const QPoint onIcon = grid().pos() + middleOf(u"txt"_s);
        const QPoint beside(3, _window->height() / 2);
        QCOMPARE(drag(entry, beside, all), Qt::CopyAction);
        QVERIFY(grid().drags().isFileDrop());
        // The file is not to be taken away.
        QCOMPARE(drag(move, onIcon, Qt::LinkAction), Qt::LinkAction);
        QCOMPARE(drag(move, onIcon, Qt::MoveAction), Qt::IgnoreAction);
        // Over the selector it has not left, and opens what it rests on.
        set("com.apple.springing.delay", 0);
        const OTStatsControl &selector = _window->statsControl();
        const QPoint running =
            selector.mapTo(_window.get(), selector.buttonRect(4).center().toPoint());
        QCOMPARE(drag(move, running, all), Qt::IgnoreAction);
        QTRY_COMPARE(grid().groupShown(), int(RunningGroup));
        QVERIFY(grid().drags().isFileDrop());
        grid().setGroupToShow(AllGroup);
        QCOMPARE(drag(drop, grid().pos() + middleOf(u"txt"_s), all), Qt::CopyAction);
        QTRY_COMPARE(launched(), QStringList { u"txt <- file:///d/one.txt"_s });
        // A panel that has gone takes nothing.
        QTRY_VERIFY(!_window->isShown());
        QCOMPARE(drag(entry, onIcon, all), Qt::IgnoreAction);
    }

    void keysCountWhileItComes_notWhileItGoes()
    {
        _desktop->movement.isStill = false;
        fill({ u"alpha"_s, u"beta"_s });
        _window->show();
        QTRY_VERIFY(_window->isActiveWindow());
        QVERIFY(_window->windowOpacity() < 0.99);
        press(Qt::Key_A);
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
        QCOMPARE(launched(), QStringList());
        _window->show();
        QCoreApplication::sendEvent(_window.get(), &composed);
        QCOMPARE(grid().filterSubstring(), u"b"_s);
    }

    void closingKeysAskToBeClosed()
    {
        showPanelOf(2);
        QSignalSpy closeWanted(_window.get(), &OTWindow::closeWanted);
        press(Qt::Key_W);
        QCOMPARE(closeWanted.size(), 0);
        press(Qt::Key_W, Qt::ControlModifier);
        QCOMPARE(closeWanted.size(), 1);
        // It ends the filter.
        press(Qt::Key_Escape);
        QCOMPARE(closeWanted.size(), 1);
        press(Qt::Key_Escape);
        press(Qt::Key_Period, Qt::ControlModifier);
        QTest::mouseClick(&_window->closeButton(), Qt::LeftButton);
        // The controller decides whether it goes.
        _window->close();
        QCOMPARE(closeWanted.size(), 5);
        QVERIFY(_window->isShown());
    }

    void theBackgroundMovesIt_andOpensTheMenu()
    {
        showPanelOf(4);
        const QPoint start = frame().topLeft();
        QSignalSpy menuWanted(_window.get(), &OTWindow::menuWanted);
        QSignalSpy prefsWanted(_window.get(), &OTWindow::prefsWanted);
        const QPoint onMargin(_window->width() / 2, 8);
        QWindow *const window = _window->windowHandle();
        const auto dragged = [&](const QPoint &from, const QPoint &way) {
            QTest::mousePress(window, Qt::LeftButton, {}, from);
            QTest::mouseMove(window, from + way);
            // The window has followed, and the pointer with it.
            QTest::mouseRelease(window, Qt::LeftButton, {}, from);
            return frame().topLeft() - start;
        };
        QTest::mouseClick(window, Qt::RightButton, {}, onMargin);
        QCOMPARE(menuWanted.size(), 1);
        QCOMPARE(menuWanted[0][0].toPoint(), start + onMargin);
        QTest::mouseClick(&_window->prefsButton(), Qt::LeftButton);
        QCOMPARE(prefsWanted.size(), 1);
        QCOMPARE(dragged(onMargin, { 2, 1 }), QPoint());
        QCOMPARE(dragged(onMargin, { 60, 40 }), QPoint(60, 40));
        // Between the icons as well, and not on one.
        QCOMPARE(dragged({ 18 + 3, 30 + 3 }, { -30, 50 }), QPoint(30, 90));
        QTest::mouseMove(window, QPoint(80, 80));
        QCOMPARE(dragged(grid().pos() + middleOf(u"app0"_s), { 80, 0 }), QPoint(30, 90));
        QCOMPARE(menuWanted.size(), 1);
    }

    void withoutCompositingItIsCutOut()
    {
        showPanelOf(4);
        const auto alpha = [this] { return qAlpha(_window->grab().toImage().pixel(90, 3)); };
        QVERIFY(_window->mask().isEmpty() && alpha() < 255);
        _desktop->blending.setActive(false);
        QCOMPARE(_window->mask(), OTBkgndView::roundedMask(_window->size()));
        QCOMPARE(alpha(), 255);
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

    void theScreenOfThePointerIsTaken()
    {
        QScreen *const right = QGuiApplication::screens().constLast();
        fill(4);
        QCursor::setPos(right->geometry().center());
        _window->show();
        QVERIFY(!_window->hasBeenMoved() && right->availableGeometry().contains(frame()));
        QTRY_COMPARE(_window->screen(), right);
        // While it is there the pointer does not matter.
        const QRect there = frame();
        QCursor::setPos(QGuiApplication::primaryScreen()->geometry().center());
        _window->show();
        QCOMPARE(frame(), there);
        _window->hide();
        QTRY_VERIFY(!_window->isVisible());
        _window->show();
        QVERIFY(QGuiApplication::primaryScreen()->availableGeometry().contains(frame()));
    }

    void badPreferences_leaveItUsable()
    {
        const auto isUsableWith = [this](const char *key, const QVariant &value,
                                      const QString &warning = {}) {
            cleanup();
            init();
            if (!warning.isEmpty()) {
                expectWarning(warning);
            }
            set(key, value);
            fill(4);
            show();
            const QImage picture = _window->grab().toImage();
            return qAlpha(picture.pixel(grid().pos() + middleOf(u"app1"_s))) > 0
                && QRect(0, 0, 800, 600).contains(frame());
        };
        QVERIFY(isUsableWith("windowBorderColor", u"reddish"_s, u"\"reddish\" is no colour"_s));
        QVERIFY(isUsableWith("windowColor", QVariantList { 1, 2 }, u"windowColor"_s));
        QVERIFY(isUsableWith("windowAlpha", u"much"_s, u"windowAlpha"_s));
        QVERIFY(isUsableWith("groupToShowWhenWindowOpens", Q_INT64_C(1) << 40));
    }

private:
    // Its place among the pixels of the screens, y downwards.
    QRect frame() const { return _window->geometry(); }
};

int main(int argc, char **argv)
{
    QTemporaryFile file;
    if (!file.open() || file.write(OTWindowTest::Screens) < 0 || !file.flush()) {
        return 1;
    }
    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + QFile::encodeName(file.fileName()));
    OTNSAppSubclass application(argc, argv);
    OTWindowTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "OTWindowTest.moc"
