#include "shell/selector/OTStatsControl.h"

#include "shell/PanelFixture.h"
#include "shell/selector/StatsAccessible.h"
#include "support/Contrast.h"
#include "support/Shapes.h"

#include <QDragEnterEvent>
#include <QMimeData>
#include <QPainter>

namespace {

enum Index { Total, Included, Excluded, Favorite, Running };

} // namespace

class OTStatsControlTest : public PanelFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void capsulesLieSideBySide()
    {
        const QList<QSizeF> sizes { { 10, 12 }, { 20.5, 11.2 } };
        const StatsLayout layout(sizes, 18);
        const QList<StatsLayout::Button> expected { { { 9, 1, 10, 12 }, { 1, 1, 26, 16 } },
            { { 36, 1, 21, 12 }, { 28, 1, 37, 16 } } };
        QCOMPARE(layout.buttons(), expected);
        QCOMPARE(layout.totalWidth(), 66);
        QCOMPARE(layout.buttonAt({ 27.5, 9 }), -1);
        QCOMPARE(layout.buttonAt({ 29, 2 }), 1);
        QCOMPARE(layout.buttonAt({ 29, 17.5 }), -1);
        const QList<QSizeF> shorter { { 5, 12 }, { 5, 12 } };
        QCOMPARE(StatsLayout::fittingWording({ sizes, shorter }, 18, 66), 0);
        QCOMPARE(StatsLayout::fittingWording({ sizes, shorter }, 18, 65), 1);
    }

    void labelsGrowShorter_andAreCutOff()
    {
        fill(2);
        makeWide();
        QCOMPARE(labels(), u"2 Total, 2 Included, 0 Excluded, 0 Favorite, 0 Running"_s);
        const int wide = control().width();
        QCOMPARE(control().geometry(), QRect(30, 10, wide, 18));
        control().layOut({ 30, 10, wide - 1, 18 });
        QCOMPARE(labels(), u"2 T, 2 I, 0 E, 0 F, 0 R"_s);
        const int narrow = control().width();
        control().layOut({ 30, 10, narrow - 1, 18 });
        QCOMPARE(labels(), u"T, I, E, F, R"_s);
        const int letters = control().width();
        QVERIFY(letters < narrow && narrow < wide);
        // The pointer does not find what is cut off, and it ends round.
        control().layOut({ 30, 10, letters / 2, 18 });
        QCOMPARE(control().width(), letters / 2);
        QCOMPARE(control().indexOfButtonAt(endOf(Total)), int(Total));
        QCOMPARE(control().indexOfButtonAt(endOf(Running)), -1);
        // So is the capsule that goes on beyond the edge.
        control().selectButtonForGroup(IncludedGroup);
        const int cut = int(control().buttonRect(Included).center().x());
        control().layOut({ 30, 10, cut, 18 });
        QVERIFY(qAlpha(picture().pixel(cut - 1, 9)) > 0);
        QVERIFY(qAlpha(picture().pixel(cut - 1, 2)) < 20);
        control().layOut({ 30, 10, -5, -5 });
        QCOMPARE(control().width(), 0);
        makeWide();
        control().setCount(100'000, Included);
        QVERIFY(labels().contains(u"100000 Included") && control().width() > wide);
    }

    void countsFollowTheCatalogue()
    {
        fill({ u"a"_s, u"b"_s, u"c"_s });
        makeWide();
        _manager->excludeApp(app(u"b"_s));
        _manager->moveApp(app(u"a"_s), User1DGroup, 0, 0);
        _desktop->run({ pathOf(u"a"_s), pathOf(u"c"_s) });
        QTRY_COMPARE(labels(), u"3 Total, 2 Included, 1 Excluded, 1 Favorite, 2 Running"_s);
        QVERIFY(control().isButtonEnabled(Excluded) && control().isButtonEnabled(Favorite));
        _manager->includeApp(app(u"b"_s));
        _manager->removeAppsFromUserApps(_manager->userApps1D());
        QTRY_COMPARE(labels(), u"3 Total, 3 Included, 0 Excluded, 0 Favorite, 2 Running"_s);
        QVERIFY(!control().isButtonEnabled(Excluded) && !control().isButtonEnabled(Favorite));
        QVERIFY(!control().isButtonEnabled(Total));
    }

    void onlyWhatChangesIsPainted()
    {
        fill(2);
        show();
        QCoreApplication::processEvents();
        PaintedRegion painted;
        control().installEventFilter(&painted);
        const auto isPainted = [&painted] {
            painted.region = {};
            QCoreApplication::processEvents();
            return !painted.region.isEmpty();
        };
        control().layOut(control().geometry());
        _manager->sortAllArrays();
        control().selectButtonForGroup(Included1DGroup);
        control().updateColors();
        send(QEvent::MouseMove, { 0, 0 }, {});
        QVERIFY(!isPainted());
        control().setCount(7, Included);
        QVERIFY(isPainted());
        set("windowColor", u"#ffffffff"_s);
        QVERIFY(isPainted());
    }

    void itFollowsTheGrid()
    {
        fill(2);
        grid().setGroupToShow(RunningGroup);
        QCOMPARE(selected(), int(Running));
        QCOMPARE(control().groupForSelectedButton(), int(RunningGroup));
        set("groupOrientation", 0);
        control().selectButtonAtIndex(-4);
        QCOMPARE(grid().groupShown(), int(All1DGroup));
        QCOMPARE(selected(), int(Total));
        control().selectButtonAtIndex(9);
        QCOMPARE(selected(), int(Running));
        control().selectButtonForGroup(-1);
        QCOMPARE(control().groupForSelectedButton(), -1);
        // A modifier turns the included applications into all of them, however often it is clicked.
        show();
        grid().modifierKeysChanged(Qt::AltModifier);
        for (int i = 0; i < 2; ++i) {
            click(Included);
            QCOMPARE(grid().groupShown(), int(All1DGroup));
            QCOMPARE(selected(), int(Total));
        }
    }

    void tab_skipsWhatIsDisabled_andActsOnceIfHeld()
    {
        fill(2);
        _window->show();
        const auto tabs = [this](int excluded, int favourites, const QList<int> &order) {
            control().setCount(excluded, Excluded);
            control().setCount(favourites, Favorite);
            grid().setGroupToShow(IncludedGroup);
            for (const int index : order) {
                QCOMPARE(selected(), index);
                press(Qt::Key_Tab);
            }
            for (qsizetype i = order.size(); i-- > 0;) {
                press(Qt::Key_Backtab, Qt::ShiftModifier);
                QCOMPARE(selected(), order[i]);
                QCOMPARE(StatsButtons::groupForGroup(grid().groupShown()),
                    control().groupForSelectedButton());
            }
        };
        tabs(1, 0, { Included, Excluded, Running, Total });
        tabs(0, 1, { Included, Favorite, Running });
        tabs(0, 0, { Included, Running });
        const auto isTaken = [this](int key, Qt::KeyboardModifiers modifiers, bool isRepeat) {
            return control().handleKeyDown(
                QKeyEvent(QEvent::KeyPress, key, modifiers, u"\t"_s, isRepeat));
        };
        QVERIFY(
            isTaken(Qt::Key_Tab, {}, true) && !isTaken(Qt::Key_Tab, Qt::ControlModifier, false));
        QVERIFY(!isTaken(Qt::Key_A, {}, false) && !isTaken(Qt::Key_Backspace, {}, true));
        QCOMPARE(selected(), int(Included));
        QVERIFY(isTaken(Qt::Key_Tab, Qt::ShiftModifier, false));
        QCOMPARE(selected(), int(Running));
    }

    void swipesOverTheGrid_areFollowed()
    {
        fill(2);
        grid().setGroupToShow(IncludedGroup);
        NotificationCenter &center = NotificationCenter::defaultCenter();
        Q_EMIT center.N_SelectNextIconGroup(_window.get());
        Q_EMIT center.N_SelectPrevIconGroup(_window.get());
        QCOMPARE(selected(), int(Included));
        Q_EMIT center.N_SelectNextIconGroup(&grid());
        QCOMPARE(selected(), int(Running));
        control().setCount(1, Favorite);
        Q_EMIT center.N_SelectPrevIconGroup(&grid());
        QCOMPARE(selected(), int(Favorite));
    }

    void theMouse_isShownAndSelects()
    {
        fill(2);
        makeWide();
        grid().setGroupToShow(IncludedGroup);
        const auto states = [this] {
            QString seen;
            for (int i = 0; i < StatsButtons::Count; ++i) {
                seen += QString::number(int(control().mouseState(i)));
            }
            return seen;
        };
        const QPoint outside(-20, 5);
        send(QEvent::MouseMove, endOf(Excluded), {});
        send(QEvent::MouseMove, endOf(Favorite), {});
        QCOMPARE(states(), u"00030"_s);
        send(QEvent::MouseButtonPress, endOf(Favorite), Qt::LeftButton);
        QCOMPARE(states(), u"00020"_s);
        send(QEvent::MouseMove, outside, Qt::LeftButton);
        QCOMPARE(states(), u"00000"_s);
        send(QEvent::MouseButtonRelease, outside, {});
        QCOMPARE(selected(), int(Included));
        send(QEvent::MouseButtonPress, endOf(Favorite), Qt::LeftButton);
        send(QEvent::MouseMove, endOf(Total), Qt::LeftButton);
        QCOMPARE(states(), u"20000"_s);
        // Disabled as it is.
        send(QEvent::MouseButtonRelease, endOf(Total), {});
        QCOMPARE(states(), u"00000"_s);
        QCOMPARE(selected(), int(Total));
        QCOMPARE(grid().groupShown(), int(AllGroup));
        makeWide();
        send(QEvent::MouseMove, endOf(Running), {});
        QCOMPARE(states(), u"00003"_s);
        // The capsule moves away from under the pointer.
        control().setCount(1'000'000'000, Total);
        QCOMPARE(states(), u"00030"_s);
        QEvent leave(QEvent::Leave);
        QCoreApplication::sendEvent(&control(), &leave);
        QCOMPARE(states(), u"00000"_s);
    }

    void pressesOffTheCapsules_areThePanels()
    {
        fill(2);
        show();
        const QSignalSpy menus(_window.get(), &OTWindow::menuWanted);
        QTest::mouseClick(&control(), Qt::RightButton, {}, endOf(Included));
        QCOMPARE(menus.count(), 1);
        const QPoint between(int(control().buttonRect(Excluded).left()), 0);
        const QPoint before = _window->pos();
        QTest::mousePress(&control(), Qt::LeftButton, {}, between);
        const QPoint there = between + QPoint(40, -30);
        send(QEvent::MouseMove, there, Qt::LeftButton);
        QTest::mouseRelease(&control(), Qt::LeftButton, {}, between);
        QCOMPARE(_window->pos() - before, QPoint(40, -30));
        QCOMPARE(selected(), int(Included));
    }

    void capsulesLookLikeTheirState()
    {
        fill(2);
        grid().setGroupToShow(IncludedGroup);
        makeWide();
        const auto alphaOf = [this](
                                 int index) { return picture().pixelColor(endOf(index)).alpha(); };
        QCOMPARE(alphaOf(Running), 108);
        QVERIFY(std::abs(alphaOf(Included) - 169) <= 1);
        send(QEvent::MouseMove, endOf(Running), {});
        QCOMPARE(alphaOf(Running), alphaOf(Included));
        send(QEvent::MouseButtonPress, endOf(Included), Qt::LeftButton);
        QVERIFY(std::abs(alphaOf(Included) - 145) <= 1);
    }

    void labelsCanBeRead()
    {
        fill(2);
        grid().setGroupToShow(IncludedGroup);
        makeWide();
        const QRect place(control().pos(), control().size());
        for (const char *name : { "#000000", "#ffffff", "#808080", "#c00000", "#0000ff" }) {
            for (const double alpha : { 0.0, 0.3, 0.85, 1.0 }) {
                set("windowColor", QLatin1String(name));
                set("windowAlpha", alpha);
                QColor window = colorFromText(QLatin1String(name));
                window.setAlphaF(float(alpha));
                send(QEvent::MouseMove, endOf(Running), {});
                for (const auto desktop : { Qt::black, Qt::darkGray, Qt::white }) {
                    QImage seen(place.size(), QImage::Format_RGB32);
                    seen.fill(desktop);
                    QPainter(&seen).fillRect(seen.rect(), window);
                    control().render(&seen, {}, {}, QWidget::DrawChildren);
                    for (const int index : { Included, Excluded, Running }) {
                        const QPoint end = endOf(index);
                        // Of the letters, the pixel that is smoothed least; no pixel is all ink.
                        double contrast = 0;
                        const int count = 10 * int(control().buttonRect(index).width() - 8);
                        for (int i = 0; i < count; ++i) {
                            const QColor color = seen.pixelColor(end.x() + i / 10, 4 + i % 10);
                            contrast = qMax(contrast, Contrast::ratio(seen.pixelColor(end), color));
                        }
                        QVERIFY2(contrast >= 0.93 * Contrast::Enough, name);
                    }
                }
            }
        }
    }

    // In a panel that is no wider than it has to be.
    void countsAreShownBesideAnyIcons()
    {
        fill(1);
        grid().setGroupToShow(IncludedGroup);
        _window->show();
        QVERIFY(labels().contains(u"1 I"));
        const QSize narrow = _window->size();
        for (int i = 0; i < 120; ++i) {
            save(pathOf(u"later%1"_s.arg(i)), {});
        }
        _manager->fullScan();
        for (const AppRef &one : _manager->allApps1D().mid(1)) {
            _manager->excludeApp(one);
        }
        QTRY_VERIFY(labels().contains(u"120 E"));
        QVERIFY(_window->width() > narrow.width());
        QCOMPARE(_window->height(), narrow.height());
        // As long as the numbers are.
        const int wide = _window->width();
        _manager->moveApp(_manager->allApps1D().first(), UserGroup, 0, 0);
        QTRY_VERIFY(labels().contains(u"1 F"));
        QCOMPARE(_window->width(), wide);
    }

    void aDragThatRests_opens()
    {
        fill(2);
        makeWide();
        set("com.apple.springing.delay", 0);
        grid().setGroupToShow(IncludedGroup);
        QVERIFY(isDragAccepted<QDragEnterEvent>({ 0, 0 }));
        // Away again before there was time for anything.
        QVERIFY(!isDragAccepted<QDragMoveEvent>(endOf(Running)));
        QVERIFY(!isDragAccepted<QDragMoveEvent>({ 0, 0 }));
        QCoreApplication::processEvents();
        QCOMPARE(selected(), int(Included));
        QVERIFY(!isDragAccepted<QDragMoveEvent>(endOf(Total)));
        QVERIFY(!isDragAccepted<QDragMoveEvent>(endOf(Running)));
        QTRY_COMPARE(grid().groupShown(), int(RunningGroup));
        // Once for each rest.
        grid().setGroupToShow(IncludedGroup);
        QVERIFY(!isDragAccepted<QDragMoveEvent>(endOf(Running)));
        QCoreApplication::processEvents();
        QCOMPARE(selected(), int(Included));
        QDragLeaveEvent leave;
        QCoreApplication::sendEvent(&control(), &leave);
        makeWide();
        QVERIFY(isDragAccepted<QDragEnterEvent>(endOf(Running)));
        QTRY_COMPARE(selected(), int(Running));
    }

    void theDelay_isWithinLimits()
    {
        for (const auto &[stored, delay] : { std::pair(-1.0, 0.5), std::pair(1e300, 86400.0) }) {
            _defaults->setObjectForThisRun(u"com.apple.springing.delay"_s, stored);
            QCOMPARE(SpringLoading::delay(), delay);
        }
    }

    void assistiveTechnologies_findTabs()
    {
        fill(2);
        control().layOut({ 30, 10, 120, 18 });
        grid().setGroupToShow(IncludedGroup);
        QAccessibleInterface *const row = QAccessible::queryAccessibleInterface(&control());
        QCOMPARE(row->role(), QAccessible::PageTabList);
        QCOMPARE(row->childCount(), 5);
        QStringList heard;
        for (int i = 0; i < 5; ++i) {
            QAccessibleInterface *const tab = row->child(i);
            QCOMPARE(tab->role(), QAccessible::PageTab);
            QCOMPARE(row->indexOfChild(tab), i);
            QCOMPARE(row->childAt(tab->rect().center().x(), tab->rect().center().y()), tab);
            heard += tab->text(QAccessible::Name) + (tab->state().selected ? u" *"_s : QString())
                + (tab->state().disabled ? u" -"_s : QString());
        }
        QCOMPARE(
            heard.join(u", "), u"2 Total -, 2 Included *, 0 Excluded -, 0 Favorite -, 0 Running"_s);
        row->child(Running)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        QCOMPARE(grid().groupShown(), int(RunningGroup));
        control().layOut({ 30, 10, 20, 18 });
        QVERIFY(row->child(Running)->state().offscreen);
    }

private:
    OTStatsControl &control() const { return _window->statsControl(); }
    // At the left end of a capsule, where there is no text.
    QPoint endOf(int index) const
    {
        const QRectF capsule = control().buttonRect(index);
        return { int(capsule.left()) + 4, int(capsule.center().y()) };
    }
    QString labels() const
    {
        QStringList labels;
        for (int i = 0; i < StatsButtons::Count; ++i) {
            labels.append(control().displayedLabel(i));
        }
        return labels.join(u", ");
    }
    // Not as the panel would have it.
    void makeWide() const
    {
        _window->grab();
        control().layOut({ 30, 10, 2000, 18 });
    }
    void click(int index) const { QTest::mouseClick(&control(), Qt::LeftButton, {}, endOf(index)); }
    void send(QEvent::Type type, const QPoint &point, Qt::MouseButtons buttons) const
    {
        const bool isMove = type == QEvent::MouseMove;
        QMouseEvent event(type, point, control().mapToGlobal(point),
            isMove ? Qt::NoButton : Qt::LeftButton, buttons, {});
        QCoreApplication::sendEvent(&control(), &event);
    }
    // Without what lies below.
    QImage picture() const
    {
        QImage picture(control().size(), QImage::Format_ARGB32);
        picture.fill(Qt::transparent);
        control().render(&picture, {}, {}, QWidget::DrawChildren);
        return picture;
    }
    int selected() const { return control().indexOfSelectedButton(); }
    template <typename Event> bool isDragAccepted(const QPoint &point) const
    {
        const QMimeData data;
        Event event(point, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, {});
        QCoreApplication::sendEvent(&control(), &event);
        [&event] { QCOMPARE(event.dropAction(), Qt::IgnoreAction); }();
        return event.isAccepted();
    }
};

QTEST_MAIN(OTStatsControlTest)
#include "OTStatsControlTest.moc"
