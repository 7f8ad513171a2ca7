#include "grid/OTIconView.h"

#include "grid/IconViewFixture.h"
#include "grid/layout/GridKeys.h"

#include <QKeyEvent>
#include <QMenu>
#include <QPaintEvent>
#include <QWheelEvent>

#include <utility>

namespace {

class PaintedRegion : public QObject
{
public:
    QRegion region;
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Paint) {
            region += static_cast<QPaintEvent *>(event)->region();
        }
        return false;
    }
};

} // namespace

class OTIconViewTest : public IconViewFixture
{
    Q_OBJECT
private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void theSizeIsAskedForOnlyWhenItChanges()
    {
        QSignalSpy asked(&center(), &NotificationCenter::N_SubviewNeedsResizing);
        fill({ u"a"_s, u"b"_s });
        QCOMPARE(asked.size(), 1);
        QCOMPARE(asked[0][0].value<QObject *>(), _view.get());
        // Two cells of 68 points side by side within margins of 12.
        QCOMPARE(_view->viewSize(), QSizeF(160, 92));
        _view->resizeView(OTIconView::Resizing::WhenChanged);
        QCOMPARE(asked.size(), 1);
        _manager->excludeApp(app(u"a"_s));
        QCOMPARE(asked.size(), 2);
        QCOMPARE(_view->viewSize(), QSizeF(92, 92));
        _manager->excludeApp(app(u"b"_s));
        QVERIFY(_view->isEmpty() && _view->coordsOfPoint({ 40, 40 }).isEmpty());
    }

    void iconsAreLoaded_atTheSizeThatLasts()
    {
        fill({ u"a"_s, u"b"_s });
        _view.reset();
        _manager = std::make_unique<OTAppManager>(*_desktop, OTAppManager::Use::Preview);
        _manager->rescanAllAppsPrioritizingGroup(IncludedGroup);
        _view = std::make_unique<OTIconView>(*_manager, _host);
        const auto haveSize = [this](int size) {
            return app(u"a"_s)->icon().width() == size && app(u"b"_s)->icon().width() == size;
        };
        QTRY_VERIFY(haveSize(64));
        // The first of several is not waited for.
        _defaults->setObject(u"maximumIconSize"_s, 32);
        QTRY_VERIFY(haveSize(32));
        const qsizetype before = _desktop->fakeIcons.asked().size();
        for (int size = 33; size < 60; ++size) {
            _defaults->setObject(u"maximumIconSize"_s, size);
        }
        QTRY_VERIFY(haveSize(59));
        QVERIFY(_desktop->fakeIcons.asked().size() - before <= 4);
    }

    void anIconIsDrawnInItsCell()
    {
        fill({ u"a"_s, u"b"_s });
        app(u"a"_s)->setIcon(filled(Qt::red));
        app(u"b"_s)->setIcon(filled(Qt::blue).scaled(32, 32));
        const QImage shown = _view->grab().toImage();
        // Margin 12, padding 2: icons fill 14 to 77 and 82 to 145, whatever size they were loaded
        // in.
        QVERIFY(shown.pixelColor(14, 14) == Qt::red && shown.pixelColor(77, 77) == Qt::red);
        QVERIFY(shown.pixelColor(78, 77) != Qt::red);
        QVERIFY(shown.pixelColor(82, 14) == Qt::blue && shown.pixelColor(145, 77) == Qt::blue);
        // Behind what runs there is something.
        run(u"a"_s);
        QCOMPARE(_view->grab().toImage().pixelColor(13, 40), QColor(Qt::red));
    }

    // An icon that was loaded in points is loaded again for a screen with more pixels.
    void aFineScreen_getsIconsOfItsOwn()
    {
        fill({ u"a"_s });
        app(u"a"_s)->setIcon(filled(Qt::red));
        _desktop->fakeIcons.colors[u"a"_s] = Qt::green;
        const auto drawnAt = [this](int ratio) {
            QImage image(_view->size() * ratio, QImage::Format_ARGB32_Premultiplied);
            image.setDevicePixelRatio(ratio);
            _view->render(&image);
            return image.pixelColor(middleOf(u"a"_s) * ratio);
        };
        QCOMPARE(drawnAt(1), QColor(Qt::red));
        QCOMPARE(drawnAt(2), QColor(Qt::red));
        QTRY_COMPARE(drawnAt(2), QColor(Qt::green));
    }

    void aFavouriteThatMovedIsFoundInsteadOfLaunched()
    {
        fill({ u"a"_s });
        const AppRef lost = _manager->appForPath(_desktop->tree.path(u"elsewhere/a"_s));
        _manager->moveApp(lost, UserGroup, 0, 0);
        showGroup(UserGroup);
        const QRectF rect = Geometry::flipped(_view->rectOfApp(lost), _view->height());
        QTest::mouseClick(_view.get(), Qt::LeftButton, {}, rect.center().toPoint());
        QCOMPARE(_manager->userApps1D(), AppList { app(u"a"_s) });
        click(u"a"_s, {});
        QTRY_COMPARE(launched(), QStringList { u"a"_s });
    }

    void aChangedOrientation_leadsToALayoutAndAReadingOrder()
    {
        fill({ u"a"_s, u"b"_s, u"c"_s });
        _view->setGroupToShow(IncludedGroup);
        QSignalSpy asked(&center(), &NotificationCenter::N_SubviewNeedsResizing);
        // The reading order stays the same at 0, and the layout must follow all the same.
        for (const auto &[orientation, readingOrder, group, layouts] :
            { std::tuple(1, 2, int(IncludedGroup), 1), std::tuple(0, 2, int(Included1DGroup), 2),
                std::tuple(2, 1, int(IncludedGroup), 3) }) {
            _defaults->setObject(GridKeys::groupOrientation, orientation);
            QCOMPARE(_defaults->integerForKey(u"iconReadingOrder"_s), readingOrder);
            QCOMPARE(_view->groupShown(), group);
            QCOMPARE(asked.size(), layouts);
        }
    }

    void typing_filters_andReturnLaunchesTheOnlyOne()
    {
        fill({ u"Quick Note"_s, u"Notebook"_s, u"No Tag"_s });
        QSignalSpy announced(&center(), &NotificationCenter::N_FilterStringChanged);
        type(u"not"_s);
        QCOMPARE(announced.size(), 3);
        QCOMPARE(announced[2].value(1).toString(), u"not"_s);
        QCOMPARE(names(_view->keyFilteredApps1D()), u"Notebook Quick Note"_s);
        QVERIFY(_view->isAppKeyFilteredOut(app(u"No Tag"_s)));
        press(Qt::Key_Return);
        QCOMPARE(_view->filterSubstring(), u"not"_s);
        type(u"eb"_s);
        press(Qt::Key_Enter);
        QCOMPARE(_view->filterSubstring(), QString());
        QTRY_COMPARE(launched(), QStringList(u"Notebook"_s));
        QCOMPARE(_host.hideCount, 1);
        type(QString(100, u'n'));
        QCOMPARE(_view->filterSubstring().size(), 100);
        QVERIFY(press(Qt::Key_Escape) && !press(Qt::Key_Escape));
        _view->textCommitted(u"é"_s);
        QCOMPARE(_view->filterSubstring(), u"é"_s);
        QVERIFY(!press(Qt::Key_A, Qt::ControlModifier, u"\x01"_s));
        QCOMPARE(_view->filterSubstring(), u"é"_s);
    }

    void anotherGroup_startsClean()
    {
        fill({ u"a"_s, u"b"_s });
        type(u"a"_s);
        hover(u"b"_s);
        showGroup(All1DGroup);
        QCOMPARE(_view->filterSubstring(), QString());
        QVERIFY(_view->selectedCoords().isEmpty());
        _view.reset();
        _view = std::make_unique<OTIconView>(*_manager, _host);
        QVERIFY(type(u"a"_s) && !press(Qt::Key_Down) && !_view->menu().contextualMenu());
        QVERIFY(_view->keyFilteredApps1D().isEmpty());
    }

    void commandKeys_changeTheNumberOfRows()
    {
        fill({ u"a"_s, u"b"_s, u"c"_s, u"d"_s });
        QVERIFY(!press(Qt::Key_Equal, Qt::ControlModifier));
        showGroup(IncludedGroup);
        const quint64 rows = _view->gridLayout().rowCount();
        QVERIFY(press(Qt::Key_Equal, Qt::ControlModifier));
        QCOMPARE(_view->gridLayout().rowCount(), rows + 1);
        for (int i = 0; i < 5; ++i) {
            QVERIFY(press(Qt::Key_Minus, Qt::ControlModifier));
        }
        QCOMPARE(_view->gridLayout().rowCount(), 1);
        type(u"a"_s);
        QVERIFY(press(Qt::Key_Period, Qt::ControlModifier));
        QVERIFY(_view->filterSubstring().isEmpty());
    }

    void arrowKeys_selectWhatReturnLaunches()
    {
        fill({ u"a"_s, u"b"_s, u"bc"_s, u"d"_s, u"e"_s, u"xB"_s, u"y"_s });
        press(Qt::Key_Return);
        hover(u"a"_s);
        press(Qt::Key_Return);
        QVERIFY(press(Qt::Key_Right));
        QCOMPARE(selected(), u"b"_s);
        type(u"cx"_s); // which leaves none
        QVERIFY(press(Qt::Key_Right));
        QCOMPARE(selected(), u"b"_s);
        press(Qt::Key_Return);
        QCOMPARE(_host.hideCount, 0);
        press(Qt::Key_Escape);
        press(Qt::Key_End);
        press(Qt::Key_Home);
        QCOMPARE(selected(), u"a"_s);
        const QImage marked = _view->grab().toImage();
        hover(u"a"_s);
        QVERIFY(marked.copy(12, 12, 68, 68) != _view->grab().toImage().copy(12, 12, 68, 68));

        // Only b, bc and xB are lit; the first of them comes first.
        _view->forceRowColCountForRows(2, 0);
        hover(u"d"_s);
        type(u"b"_s);
        QString way;
        for (const int key : { Qt::Key_Down, Qt::Key_Right, Qt::Key_Right, Qt::Key_Right,
                 Qt::Key_Home, Qt::Key_PageUp, Qt::Key_Up, Qt::Key_End, Qt::Key_Left }) {
            QVERIFY(press(key));
            way += selected() + u' ';
        }
        QCOMPARE(way, u"b bc xB xB xB b b bc b "_s);
        press(Qt::Key_Return);
        QTRY_COMPARE(launched(), QStringList(u"b"_s));
    }

    // The pointer rests while Alt shows another list: what lies elsewhere then is not selected.
    void aLayoutPass_leavesNothingSelectedElsewhere()
    {
        fill({ u"a"_s, u"b"_s, u"c"_s });
        showGroup(IncludedGroup);
        _view->show();
        QVERIFY(QTest::qWaitForWindowActive(_view.get()));
        for (const bool isElsewhere : { false, true }) {
            _view->modifierKeysChanged({});
            if (isElsewhere) {
                _manager->excludeApp(app(u"a"_s));
            }
            hover(u"b"_s);
            QSignalSpy announced(&center(), &NotificationCenter::N_SelectedAppChanged);
            _view->modifierKeysChanged(Qt::AltModifier);
            QCOMPARE(selected(), isElsewhere ? QString() : u"b"_s);
            QCOMPARE(announced.size(), isElsewhere ? 1 : 0);
        }
    }

    void whatComesAndGoes_changesNothingThatWasBegun()
    {
        fill({ u"b"_s, u"c"_s, u"d"_s });
        const auto addAndScan = [this](const QString &name) {
            _desktop->tree.add(u"apps/"_s + name, {});
            _manager->fullScan();
            QVERIFY(QTest::qWaitFor([&] { return !_manager->isBusyScanning(); }));
        };
        hover(u"b"_s);
        press(Qt::Key_Right);
        addAndScan(u"a"_s);
        QCOMPARE(_view->occupiedCells().size(), 4);
        QCOMPARE(selected(), u"c"_s);
        press(Qt::Key_Return);
        QTRY_COMPARE(launched(), QStringList(u"c"_s));
        _manager->excludeApp(app(u"c"_s));
        QVERIFY(_view->selectedCoords().isEmpty());
        // What is pressed goes, and the next one takes its place.
        const QPointF start = middleOf(u"b"_s);
        send(QEvent::MouseButtonPress, start, Qt::LeftButton, Qt::LeftButton);
        _manager->removeAppsFromAllArrays({ app(u"b"_s) });
        QVERIFY(_view->appAtPoint(Geometry::flipped(start, _view->height())));
        send(QEvent::MouseButtonRelease, start, Qt::LeftButton, {});
        QCOMPARE(_host.hideCount, 1);
        press(Qt::Key_Menu);
        _view.reset();
        QVERIFY(!QApplication::activePopupWidget());
    }

    void pointer_selects()
    {
        fill({ u"a"_s, u"b"_s });
        hover(u"a"_s);
        QSignalSpy announced(&center(), &NotificationCenter::N_SelectedAppChanged);
        hover(u"b"_s);
        hover(u"b"_s);
        QCOMPARE(announced.size(), 1);
        QCOMPARE(announced[0].value(1).value<AppRef>(), app(u"b"_s));
        QEvent leaving(QEvent::Leave);
        QCoreApplication::sendEvent(_view.get(), &leaving);
        QCOMPARE(announced.size(), 2);
        QVERIFY(_view->selectedCoords().isEmpty());
    }

    void whatChanges_isPaintedAndNoMore()
    {
        fill({ u"a"_s, u"b"_s, u"c"_s });
        _view->show();
        QVERIFY(QTest::qWaitForWindowExposed(_view.get()));
        hover(u"a"_s);
        QCoreApplication::processEvents();
        PaintedRegion painted;
        _view->installEventFilter(&painted);
        hover(u"b"_s);
        QTRY_COMPARE(painted.region, QRegion(cellOf(u"a"_s)) + cellOf(u"b"_s));
        painted.region = {};
        app(u"c"_s)->setIcon(filled(Qt::red));
        QTRY_COMPARE(painted.region, QRegion(cellOf(u"c"_s)));
        // A new one is marked, in a corner of its icon, until it is launched.
        const QPoint corner = cellOf(u"c"_s).topRight() + QPoint(-9, 9);
        const auto isMarked = [&] {
            return _view->grab().toImage().pixelColor(corner) != QColor(Qt::red);
        };
        QVERIFY(!isMarked());
        painted.region = {};
        install(u"c"_s);
        QTRY_COMPARE(painted.region, QRegion(cellOf(u"c"_s)));
        QVERIFY(isMarked());
        for (const bool isWanted : { false, true }) {
            painted.region = {};
            _defaults->setObject(u"markNewApplications"_s, isWanted);
            QTRY_COMPARE(painted.region, QRegion(_view->rect()));
            QCOMPARE(isMarked(), isWanted);
        }
        painted.region = {};
        _view->commands().launchApp(app(u"c"_s));
        _view->starts().end(app(u"c"_s)->path());
        QTRY_COMPARE(painted.region, QRegion(cellOf(u"c"_s)));
        QVERIFY(!isMarked());
        // Dimmed while a press on it lasts.
        QTest::mousePress(_view.get(), Qt::LeftButton, {}, middleOf(u"c"_s));
        QVERIFY(_view->grab().toImage().pixelColor(middleOf(u"c"_s)) != Qt::red);
        QTest::mouseRelease(_view.get(), Qt::LeftButton, {}, middleOf(u"a"_s));
        QCOMPARE(_view->grab().toImage().pixelColor(middleOf(u"c"_s)), QColor(Qt::red));
    }

    // Whether anything runs the drag or not.
    void press_thatMovesTooFar_wantsADrag_andIsAClickOnTheSameIcon()
    {
        fill({ u"a"_s, u"b"_s });
        QSignalSpy wanted(_view.get(), &OTIconView::dragWanted);
        const auto drag = [&](const QString &name, const QPointF &way) {
            const QPointF start = middleOf(name);
            send(QEvent::MouseButtonPress, start, Qt::LeftButton, Qt::LeftButton);
            send(QEvent::MouseMove, start + way, Qt::NoButton, Qt::LeftButton);
            send(QEvent::MouseButtonRelease, start + way, Qt::LeftButton, {});
            return std::pair(int(wanted.size()), _host.hideCount);
        };
        QCOMPARE(drag(u"a"_s, { 0, 2.5 }), std::pair(1, 1));
        QCOMPARE(drag(u"a"_s, { 2, -2 }), std::pair(1, 2));
        QCOMPARE(drag(u"a"_s, { 68, 0 }), std::pair(2, 2));
        QCOMPARE(selected(), u"b"_s);
        QCOMPARE(drag(u"a"_s, { -40, 0 }), std::pair(3, 2));
        // What meant no icon is the window's.
        QTest::mouseClick(_view.get(), Qt::LeftButton, {}, QPoint(3, 3));
        QVERIFY(_host.handedOn.endsWith("pr"_L1));
    }

    void theMenu_isOpenedByTheRightButton_theSignKeyAndItsOwnKey()
    {
        fill({ u"a"_s });
        _view->show();
        const auto closes = [] {
            QWidget *const menu = QApplication::activePopupWidget();
            return menu != nullptr && menu->close();
        };
        QTest::mousePress(_view.get(), Qt::LeftButton, {}, middleOf(u"a"_s));
        QVERIFY(!closes());
        QTest::mousePress(_view.get(), Qt::RightButton, {}, middleOf(u"a"_s));
        QVERIFY(closes());
        QTest::mousePress(_view.get(), Qt::LeftButton, Qt::MetaModifier, middleOf(u"a"_s));
        QVERIFY(closes());
        _view->selectCoords(_view->coordsOfApp(app(u"a"_s)));
        QVERIFY(press(Qt::Key_Menu) && closes());
    }

    void modifiedClicks()
    {
        fill({ u"a"_s, u"b"_s });
        showGroup(AllGroup);
        click(u"a"_s, Qt::ShiftModifier);
        QCOMPARE(names(_manager->excludedApps1D()), u"a"_s);
        click(u"a"_s, Qt::ShiftModifier);
        QCOMPARE(names(_manager->excludedApps1D()), QString());
        click(u"b"_s, Qt::ControlModifier);
        QTRY_COMPARE(launched(), QStringList(u"reveal b"_s));
        _manager->moveApp(app(u"a"_s), UserGroup, 0, 0);
        showGroup(UserGroup);
        click(u"a"_s, Qt::ShiftModifier);
        QCOMPARE(_manager->userApps1D().size(), 0);
        run(u"b"_s);
        showGroup(RunningGroup);
        click(u"b"_s, Qt::ShiftModifier);
        QCOMPARE(_manager->runningApps().size(), 1);
        QCOMPARE(_host.hideCount, 0);
    }

    // Where there is one to open.
    void theMiddleButton_opensOneMoreWindow()
    {
        fill({ u"a"_s, u"b"_s });
        run(u"b"_s);
        _desktop->hasNewWindows = true;
        const auto click = [this](const QString &pressed, const QString &released) {
            QTest::mousePress(_view.get(), Qt::MiddleButton, {}, middleOf(pressed));
            QTest::mouseRelease(_view.get(), Qt::MiddleButton, {}, middleOf(released));
        };
        click(u"a"_s, u"a"_s);
        QTRY_COMPARE(launched(), QStringList(u"a"_s));
        click(u"b"_s, u"b"_s);
        QTRY_COMPARE(launched().value(1), u"window b"_s);
        click(u"a"_s, u"b"_s);
        _desktop->hasNewWindows = false;
        click(u"b"_s, u"b"_s);
        QTRY_COMPARE(launched().value(2), u"b"_s);
        QCOMPARE(_host.hideCount, 3);
    }

    void anIcon_showsThatItsApplicationStarts()
    {
        fill({ u"a"_s, u"b"_s });
        run(u"b"_s);
        app(u"a"_s)->setIcon(filled(Qt::red));
        const auto color = [this] { return _view->grab().toImage().pixelColor(middleOf(u"a"_s)); };
        QCOMPARE(color(), QColor(Qt::red));
        _view->commands().launchApp(app(u"b"_s));
        _view->commands().launchApp(app(u"a"_s));
        const auto isShown = [this](const QString &name) {
            return _view->starts().isShown(app(name)->path());
        };
        QVERIFY(!isShown(u"a"_s));
        QTRY_VERIFY(isShown(u"a"_s));
        QTRY_VERIFY(color() != Qt::red);
        // What runs was raised.
        QVERIFY(!isShown(u"b"_s));
        Q_EMIT _desktop->running.startEnded(app(u"a"_s)->path());
        QVERIFY(!isShown(u"a"_s));
        QCOMPARE(color(), QColor(Qt::red));
        // One that fails is over.
        _desktop->launchStatus = LaunchStatus::Failed;
        expectWarning(u"LSOpenCFURLRef"_s);
        _view->commands().launchApp(app(u"a"_s));
        QSignalSpy told(&NotificationCenter::defaultCenter(), &NotificationCenter::N_UserMessage);
        QTRY_COMPARE(told.size(), 1);
        QTRY_VERIFY(!_view->starts().hasBegun(app(u"a"_s)->path()));
    }

    void menu_holdsWhatFits()
    {
        const QString favourite = u"Add Favorite,Add Favorite in New Group,-,"_s;
        const std::tuple<int, QString, QString> rows[] {
            { AllGroup, {}, u"Exclude,-,"_s + favourite + u"Show in Finder"_s },
            { AllGroup, u"excluded"_s, u"Include,-,"_s + favourite + u"Show in Finder"_s },
            { All1DGroup, u"favourite"_s, u"Exclude,-,Show in Finder"_s },
            { UserGroup, u"favourite running hidden"_s,
                u"Move to New Group,Remove Favorite,-,Show in Finder,-,Show,Quit"_s },
            { RunningGroup, u"running"_s,
                u"Exclude,-,"_s + favourite + u"Show in Finder,-,Hide,Quit"_s },
            { RunningGroup, u"running windows"_s,
                u"Exclude,-,"_s + favourite + u"Show in Finder,-,Open New Window,Hide,Quit"_s }
        };
        for (const auto &[group, state, expected] : rows) {
            cleanup();
            init();
            fill({ u"a"_s, u"b"_s });
            if (state.contains(u"excluded"_s)) {
                _manager->excludeApp(app(u"a"_s));
            }
            if (state.contains(u"favourite"_s)) {
                _manager->moveApp(app(u"a"_s), UserGroup, 0, 0);
            }
            if (state.contains(u"running"_s)) {
                run(u"a"_s);
            }
            _desktop->hasNewWindows = state.contains(u"windows"_s);
            _desktop->areWindowsShown = !state.contains(u"hidden"_s);
            showGroup(group);
            hover(u"a"_s);
            const std::unique_ptr<QMenu> menu = _view->menu().contextualMenu();
            QVERIFY(menu);
            QStringList items;
            for (const QAction *action : menu->actions()) {
                items.append(action->isSeparator() ? u"-"_s : action->text());
            }
            QCOMPARE(items.join(u','), expected);
        }
    }

    void menu_actsOnItsApplication_whereverThatIsThen()
    {
        fill({ u"a"_s, u"b"_s, u"c"_s });
        const auto chosen = [this](const QString &name, const QString &item, auto meanwhile) {
            hover(name);
            const std::unique_ptr<QMenu> menu = _view->menu().contextualMenu();
            meanwhile();
            for (QAction *action : menu->actions()) {
                if (action->text() == item) {
                    action->trigger();
                }
            }
        };
        chosen(u"b"_s, u"Exclude"_s, [this] { _manager->excludeApp(app(u"a"_s)); });
        QCOMPARE(names(_manager->includedApps1D()), u"c"_s);
        chosen(
            u"c"_s, u"Exclude"_s, [this] { _manager->removeAppsFromAllArrays({ app(u"c"_s) }); });
        QCOMPARE(names(_manager->excludedApps1D()), u"a b"_s);

        showGroup(AllGroup);
        chosen(u"b"_s, u"Include"_s, [] {});
        chosen(u"b"_s, u"Add Favorite"_s, [] {});
        chosen(u"a"_s, u"Add Favorite in New Group"_s, [] {});
        QCOMPARE(_manager->userApps().size(), 2);
        showGroup(UserGroup);
        chosen(u"b"_s, u"Remove Favorite"_s, [] {});
        QCOMPARE(names(_manager->userApps1D()), u"a"_s);
        run(u"a"_s);
        chosen(u"a"_s, u"Hide"_s, [] {});
        chosen(u"a"_s, u"Quit"_s, [] {});
        chosen(u"a"_s, u"Show in Finder"_s, [] {});
        QTRY_COMPARE(launched(), QStringList({ u"hide a"_s, u"quit a"_s, u"reveal a"_s }));
    }

    void menuOfColours_saysWhichOneCounts()
    {
        _defaults->setObject(GridKeys::groupContentsSortOrder, 2);
        fill({ u"a"_s, u"b"_s });
        for (const AppRef &app : _manager->allApps1D()) {
            QImage icon(16, 16, QImage::Format_ARGB32_Premultiplied);
            icon.fill(app->name() == u"a" ? Qt::red : Qt::green);
            icon.setPixelColor(0, 0, Qt::blue);
            icon.setPixelColor(0, 1, Qt::blue);
            app->setIcon(icon);
            app->setColorSortParameters(OTAppManager::iconParameters());
        }
        _manager->sortAllArrays();
        const auto chosen = [this](const QString &item) {
            hover(u"a"_s);
            const std::unique_ptr<QMenu> menu = _view->menu().contextualMenu();
            QStringList items;
            for (QAction *action : menu->findChild<QMenu *>()->actions()) {
                items.append(action->text() + (action->isChecked() ? u"!"_s : QString())
                    + (action->isEnabled() ? QString() : u"?"_s));
                if (action->text() == item) {
                    action->trigger();
                }
            }
            return items.join(u',') + u' ' + _manager->includedApps1D().constFirst()->name();
        };
        QCOMPARE(chosen(u"Red"_s), u"Red!,Blue,,As Measured? a"_s);
        QCOMPARE(chosen(u"Blue"_s), u"Red!,Blue,,As Measured? b"_s);
        QCOMPARE(_view->selectedApp(), app(u"a"_s));
        QCOMPARE(chosen(u"As Measured"_s), u"Red,Blue!,,As Measured a"_s);
        QVERIFY(press(Qt::Key_Z, Qt::ControlModifier));
        QCOMPARE(_manager->includedApps1D().constFirst(), app(u"b"_s));
    }

    void modifiers_changeWhatIsShown()
    {
        fill({ u"a"_s, u"b"_s });
        _manager->excludeApp(app(u"a"_s));
        showGroup(IncludedGroup);
        _view->show();
        _view->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(_view.get()));
        _view->modifierKeysChanged(Qt::AltModifier);
        QCOMPARE(_view->groupShown(), int(AllGroup));
        _view->modifierKeysChanged({});
        QCOMPARE(_view->groupShown(), int(IncludedGroup));
        _view->ignoreHeldModifiers(Qt::AltModifier);
        _view->modifierKeysChanged(Qt::AltModifier | Qt::ShiftModifier);
        QCOMPARE(_view->groupShown(), int(IncludedGroup));
        QCOMPARE(_view->cursor().shape(), Qt::BitmapCursor);
        _view->modifierKeysChanged({});
        QCOMPARE(_view->cursor().shape(), Qt::ArrowCursor);
        _view->modifierKeysChanged(Qt::AltModifier);
        QCOMPARE(_view->groupShown(), int(AllGroup));
    }

    void wheel_stepsThroughTheAlphabet_andSwipesThroughGroups()
    {
        fill({ u"a"_s });
        QSignalSpy next(&center(), &NotificationCenter::N_SelectNextIconGroup);
        turn({ 0, -120 });
        QCOMPARE(_view->filterSubstring(), u"a"_s);
        turn({ 0, 240 });
        QCOMPARE(_view->filterSubstring(), QString());
        const auto swipe = [this](int turns) {
            for (int i = 0; i < turns; ++i) {
                turn({ 60, 0 });
            }
        };
        // What is typed in the middle of a swipe ends it.
        swipe(2);
        for (const QString &typed : { u"a"_s, u"ab"_s }) {
            type(typed);
            swipe(1);
            press(Qt::Key_Escape);
            swipe(1);
            QVERIFY(next.isEmpty());
        }
        swipe(1);
        QCOMPARE(next.size(), 1);
    }

private:
    static NotificationCenter &center() { return NotificationCenter::defaultCenter(); }
    static QImage filled(QColor color)
    {
        QImage image(64, 64, QImage::Format_ARGB32_Premultiplied);
        image.fill(color);
        return image;
    }
    bool press(int key, Qt::KeyboardModifiers modifiers = {}, const QString &text = {})
    {
        return _view->keyPressed(QKeyEvent(QEvent::KeyPress, key, modifiers, text));
    }
    bool type(const QString &text)
    {
        bool areTaken = true;
        for (const QChar character : text) {
            areTaken = press(Qt::Key_unknown, {}, character) && areTaken;
        }
        return areTaken;
    }
    void send(QEvent::Type type, const QPointF &at, Qt::MouseButton button,
        Qt::MouseButtons buttons, Qt::KeyboardModifiers modifiers = {})
    {
        QMouseEvent event(type, at, _view->mapToGlobal(at), button, buttons, modifiers);
        QCoreApplication::sendEvent(_view.get(), &event);
    }
    QRect cellOf(const QString &name) const
    {
        return Geometry::flipped(_view->rectOfApp(app(name)), _view->height()).toRect();
    }
    void hover(const QString &name) { send(QEvent::MouseMove, middleOf(name), Qt::NoButton, {}); }
    void click(const QString &name, Qt::KeyboardModifiers modifiers)
    {
        QTest::mouseClick(_view.get(), Qt::LeftButton, modifiers, middleOf(name));
    }
    void turn(const QPoint &angle)
    {
        QWheelEvent event({ 5, 5 }, _view->mapToGlobal(QPointF(5, 5)), {}, angle, {}, {},
            Qt::NoScrollPhase, false);
        event.setTimestamp(quint64(_time += 10));
        QCoreApplication::sendEvent(_view.get(), &event);
    }
    static QString names(const AppList &apps)
    {
        QStringList names;
        for (const AppRef &app : apps) {
            names.append(app->name());
        }
        names.sort();
        return names.join(u' ');
    }
    QString selected() const
    {
        const AppRef app = _view->appAtCoords(_view->selectedCoords());
        return app ? app->name() : QString();
    }

    int _time = 1000;
};

QTEST_MAIN(OTIconViewTest)
#include "OTIconViewTest.moc"
