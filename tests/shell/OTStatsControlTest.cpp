#include "shell/selector/OTStatsControl.h"

#include "shell/PanelFixture.h"
#include "shell/selector/StatsAccessible.h"
#include "support/Contrast.h"

#include <QMimeData>

class OTStatsControlTest : public PanelFixture
{
    Q_OBJECT

    enum Index { Total, Included, Excluded, Favorite, Running };

private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void capsulesLieSideBySide()
    {
        const StatsLayout layout({ { 10, 12 }, { 20.5, 11.2 } }, 18);
        const QList<StatsLayout::Button> expected { { { 9, 1, 10, 12 }, { 1, 1, 26, 16 } },
            { { 36, 1, 21, 12 }, { 28, 1, 37, 16 } } };
        QCOMPARE(layout.buttons(), expected);
        QVERIFY(layout.buttonAt({ 27.5, 9 }) == -1 && layout.buttonAt({ 29, 2 }) == 1);
    }

    void labelsGrowShorter_andAreCutOff()
    {
        fill(2);
        makeWide();
        QCOMPARE(labels(), u"2 Total, 2 Included, 0 Excluded, 0 Favorite, 0 Running"_s);
        const int wide = control().width();
        control().layOut({ 30, 10, wide - 1, 18 });
        QCOMPARE(labels(), u"2 T, 2 I, 0 E, 0 F, 0 R"_s);
        control().layOut({ 30, 10, control().width() - 1, 18 });
        QCOMPARE(labels(), u"T, I, E, F, R"_s);
        // The pointer does not find what is cut off.
        const int letters = control().width();
        control().layOut({ 30, 10, letters / 2, 18 });
        QCOMPARE(control().width(), letters / 2);
        QCOMPARE(control().indexOfButtonAt(endOf(Total)), int(Total));
        QCOMPARE(control().indexOfButtonAt(endOf(Running)), -1);
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
        _desktop->running.launch({ pathOf(u"a"_s), pathOf(u"c"_s) });
        QTRY_COMPARE(labels(), u"3 Total, 2 Included, 1 Excluded, 1 Favorite, 2 Running"_s);
        _manager->includeApp(app(u"b"_s));
        _manager->removeAppsFromUserApps(_manager->userApps1D());
        QTRY_COMPARE(labels(), u"3 Total, 3 Included, 0 Excluded, 0 Favorite, 2 Running"_s);
        _manager->excludeApp(app(u"b"_s));
        control().takeCounts();
        QVERIFY(labels().startsWith(u"3 Total, 2 Included"));
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
        QVERIFY(control().handleKeyDown(
            QKeyEvent(QEvent::KeyPress, Qt::Key_Tab, Qt::NoModifier, u"\t"_s, true)));
        QCOMPARE(selected(), int(Included));
    }

    void itFollowsTheGrid_andSwipesOverIt()
    {
        fillWide();
        NotificationCenter &center = NotificationCenter::defaultCenter();
        Q_EMIT center.N_SelectNextIconGroup(_window.get());
        Q_EMIT center.N_SelectPrevIconGroup(_window.get());
        QCOMPARE(selected(), int(Included));
        Q_EMIT center.N_SelectNextIconGroup(&grid());
        QCOMPARE(selected(), int(Running));
        control().setCount(1, Favorite);
        Q_EMIT center.N_SelectPrevIconGroup(&grid());
        QCOMPARE(selected(), int(Favorite));
        grid().setGroupToShow(RunningGroup);
        QCOMPARE(selected(), int(Running));
        set("groupOrientation", 0);
        control().selectButtonAtIndex(Total);
        QCOMPARE(grid().groupShown(), int(All1DGroup));
        // A modifier turns the included applications into all of them, however often it is clicked.
        show();
        grid().modifierKeysChanged(Qt::AltModifier);
        for (int i = 0; i < 2; ++i) {
            click(Included);
            QCOMPARE(grid().groupShown(), int(All1DGroup));
            QCOMPARE(selected(), int(Total));
        }
    }

    void theMouse_isShownAndSelects()
    {
        fillWide();
        const auto after = [this](QEvent::Type type, const QPoint &point,
                               Qt::MouseButtons buttons = {}) {
            send(type, point, buttons);
            QString states;
            for (int i = 0; i < StatsButtons::Count; ++i) {
                states += QString::number(int(control().mouseState(i)));
            }
            return states;
        };
        const QPoint outside(-20, 5);
        const QPoint favorite = endOf(Favorite);
        after(QEvent::MouseMove, endOf(Excluded));
        QCOMPARE(after(QEvent::MouseMove, favorite), u"00030"_s);
        QCOMPARE(after(QEvent::MouseButtonPress, favorite, Qt::LeftButton), u"00020"_s);
        QCOMPARE(after(QEvent::MouseMove, outside, Qt::LeftButton), u"00000"_s);
        after(QEvent::MouseButtonRelease, outside);
        QCOMPARE(selected(), int(Included));
        after(QEvent::MouseButtonPress, favorite, Qt::LeftButton);
        QCOMPARE(after(QEvent::MouseMove, endOf(Total), Qt::LeftButton), u"20000"_s);
        // Disabled as it is.
        QCOMPARE(after(QEvent::MouseButtonRelease, endOf(Total)), u"00000"_s);
        QCOMPARE(grid().groupShown(), int(AllGroup));
    }

    void pressesOffTheCapsules_areThePanels()
    {
        showPanelOf(2);
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

    void labelsCanBeRead()
    {
        for (const char *name : { "#000000", "#ffffff", "#808080" }) {
            for (const float alpha : { 0.0F, 0.3F, 0.85F, 1.0F }) {
                QColor window(QLatin1String { name });
                const StatsColors colors(alpha, window);
                window.setAlphaF(alpha);
                for (const auto desktop : { Qt::black, Qt::darkGray, Qt::white }) {
                    const QColor row =
                        Contrast::blended(colors.row, Contrast::blended(window, desktop));
                    for (const auto &[fill, text] :
                        { colors.plain, colors.hovered, colors.pressed, colors.selected }) {
                        const double ratio = Contrast::ratio(text, Contrast::blended(fill, row));
                        QVERIFY2(ratio >= 0.98 * Contrast::Enough, name);
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
    }

    void aDragThatRests_opens()
    {
        fillWide();
        set("com.apple.springing.delay", 0);
        // Away again before there was time for anything.
        control().testDrag(endOf(Running));
        control().testDrag({ 0, 0 });
        QCoreApplication::processEvents();
        QCOMPARE(selected(), int(Included));
        control().testDrag(endOf(Running));
        QTRY_COMPARE(grid().groupShown(), int(RunningGroup));
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
    // Two applications, both included.
    void fillWide()
    {
        fill(2);
        grid().setGroupToShow(IncludedGroup);
        makeWide();
    }
    void click(int index) const { QTest::mouseClick(&control(), Qt::LeftButton, {}, endOf(index)); }
    void send(QEvent::Type type, const QPoint &point, Qt::MouseButtons buttons) const
    {
        const bool isMove = type == QEvent::MouseMove;
        QMouseEvent event(type, point, control().mapToGlobal(point),
            isMove ? Qt::NoButton : Qt::LeftButton, buttons, {});
        QCoreApplication::sendEvent(&control(), &event);
    }
    int selected() const { return control().indexOfSelectedButton(); }
};

QTEST_MAIN(OTStatsControlTest)
#include "OTStatsControlTest.moc"
