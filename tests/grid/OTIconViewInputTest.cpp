// Keys, pointer and menu of the grid.

#include "grid/GridKeys.h"
#include "grid/IconViewFixture.h"

#include <QKeyEvent>
#include <QMenu>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QWheelEvent>

#include <memory>
#include <utility>

using namespace Qt::Literals::StringLiterals;

class OTIconViewInputTest : public IconViewFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void typing_filters_andReturnLaunchesTheOnlyOne()
    {
        fill({ u"Quick Note"_s, u"Notebook"_s, u"No Tag"_s });
        QSignalSpy announced(
            &NotificationCenter::defaultCenter(), &NotificationCenter::N_FilterStringChanged);
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
        QTRY_COMPARE(_desktop->launched(), QStringList(u"Notebook"_s));
        QCOMPARE(_host.hideCount, 1);
        type(QString(100, u'n'));
        QCOMPARE(_view->filterSubstring().size(), 100);
        QVERIFY(press(Qt::Key_Escape) && !press(Qt::Key_Escape));
        _view->textCommitted(u"é"_s);
        QCOMPARE(_view->filterSubstring(), u"é"_s);
        const QString beyond = QString::fromUcs4(U"\U0001E922", 1);
        _view->textCommitted(beyond);
        QCOMPARE(_view->filterSubstring(), u"é"_s + beyond);
        press(Qt::Key_Backspace);
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
        QVERIFY(type(u"a"_s) && !press(Qt::Key_Down) && !_view->contextualMenu());
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
        QTRY_COMPARE(_desktop->launched(), QStringList(u"b"_s));
    }

    // The pointer rests while Alt shows another list.
    void aLayoutPass_leavesNothingSelectedElsewhere()
    {
        const QStringList names = u"a b c d e f g h i j k l m n"_s.split(u' ');
        fill(names);
        showGroup(IncludedGroup);
        _view->show();
        QVERIFY(QTest::qWaitForWindowActive(_view.get()));
        QRandomGenerator random(1);
        int kept = 0;
        for (int round = 0; round < 60; ++round) {
            _view->modifierKeysChanged({});
            _defaults->setObject(GridKeys::groupOrientation, random.bounded(3));
            const QString &resting = names[round % names.size()];
            const AppRef under = app(resting);
            for (const QString &name : names) {
                name == resting || random.bounded(15) <= round % 15
                    ? _manager->includeApp(app(name))
                    : _manager->excludeApp(app(name));
            }
            hover(resting);
            const auto place = [&] {
                return std::pair(_view->rectOfApp(under), _view->viewSize());
            };
            const auto before = place();
            QSignalSpy announced(
                &NotificationCenter::defaultCenter(), &NotificationCenter::N_SelectedAppChanged);
            _view->modifierKeysChanged(Qt::AltModifier);
            const bool isKept = !_view->selectedCoords().isEmpty();
            kept += isKept ? 1 : 0;
            QCOMPARE(announced.size(), isKept ? 0 : 1);
            QVERIFY(!isKept || (selected() == resting && place() == before));
        }
        QVERIFY(kept > 0 && kept < 30);
    }

    void whatComesAndGoes_changesNothingThatWasBegun()
    {
        fill({ u"b"_s, u"c"_s, u"d"_s });
        const auto addAndScan = [this](const QString &name) {
            QFile file(_home->filePath("apps/"_L1 + name));
            QVERIFY(file.open(QIODevice::WriteOnly));
            _manager->fullScan();
            QVERIFY(QTest::qWaitFor([&] { return !_manager->isBusyScanning(); }));
        };
        hover(u"b"_s);
        press(Qt::Key_Right);
        addAndScan(u"a"_s);
        QCOMPARE(_view->occupiedCells().size(), 4);
        QCOMPARE(selected(), u"c"_s);
        press(Qt::Key_Return);
        QTRY_COMPARE(_desktop->launched(), QStringList(u"c"_s));
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

    void pointer_selectsAndRepaintsTwoCells()
    {
        fill({ u"a"_s, u"b"_s, u"c"_s });
        _view->show();
        QVERIFY(QTest::qWaitForWindowExposed(_view.get()));
        hover(u"a"_s);
        QCoreApplication::processEvents();
        PaintedRegion painted;
        _view->installEventFilter(&painted);
        QSignalSpy announced(
            &NotificationCenter::defaultCenter(), &NotificationCenter::N_SelectedAppChanged);
        hover(u"b"_s);
        hover(u"b"_s);
        QTRY_VERIFY(!painted.region.isEmpty());
        const auto cell = [this](const QString &name) {
            return Geometry::flipped(_view->rectOfApp(app(name)), _view->height()).toRect();
        };
        QCOMPARE(painted.region, QRegion(cell(u"a"_s)) + cell(u"b"_s));
        QCOMPARE(announced.size(), 1);
        QCOMPARE(announced[0].value(1).value<AppRef>(), app(u"b"_s));
        QEvent leaving(QEvent::Leave);
        QCoreApplication::sendEvent(_view.get(), &leaving);
        QCOMPARE(announced.size(), 2);
        QVERIFY(_view->selectedCoords().isEmpty());
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
        _desktop->run({ app(u"b"_s)->path() });
        _manager->runningApps().constFirst()->refreshNameAndPath();
        showGroup(RunningGroup);
        QCOMPARE(drag(u"b"_s, { 0, 2.5 }), std::pair(3, 3));
        // What meant no icon is the window's.
        QTest::mouseClick(_view.get(), Qt::LeftButton, {}, QPoint(3, 3));
        QVERIFY(_host.handedOn.endsWith("pr"_L1));
    }

    void anIcon_isDimmedWhileAPressOnItLasts()
    {
        fill({ u"a"_s, u"b"_s });
        QImage red(64, 64, QImage::Format_ARGB32_Premultiplied);
        red.fill(Qt::red);
        app(u"a"_s)->setIcon(red);
        const QPoint middle = middleOf(u"a"_s);
        const auto isDimmed = [&] { return _view->grab().toImage().pixelColor(middle) != Qt::red; };
        QTest::mousePress(_view.get(), Qt::LeftButton, {}, middle);
        QVERIFY(isDimmed());
        QTest::mouseRelease(_view.get(), Qt::LeftButton, {}, middle + QPoint(40, 0));
        QVERIFY(!isDimmed());
        _view->show();
        QCursor::setPos(_view->mapToGlobal(middleOf(u"b"_s)));
        for (const Qt::MouseButton button : { Qt::RightButton, Qt::LeftButton }) {
            QTest::mousePress(_view.get(), button, Qt::MetaModifier, middle);
            QVERIFY(isDimmed());
            QApplication::activePopupWidget()->close();
            QVERIFY(!isDimmed());
            QTRY_COMPARE(selected(), u"b"_s);
        }
        hover(u"a"_s);
        QVERIFY(press(Qt::Key_Menu) && !isDimmed());
        QApplication::activePopupWidget()->close();
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
        QTRY_COMPARE(_desktop->launched(), QStringList(u"reveal b"_s));
        _manager->moveApp(app(u"a"_s), UserGroup, 0, 0);
        showGroup(UserGroup);
        click(u"a"_s, Qt::ShiftModifier);
        QCOMPARE(_manager->userApps1D().size(), 0);
        _desktop->run({ app(u"b"_s)->path() });
        showGroup(RunningGroup);
        click(u"b"_s, Qt::ShiftModifier);
        QCOMPARE(_manager->runningApps().size(), 1);
        QCOMPARE(_host.hideCount, 0);
    }

    void menu_holdsWhatFits_data()
    {
        QTest::addColumn<int>("group");
        QTest::addColumn<QString>("state");
        QTest::addColumn<QString>("items");
        const QString favourite = u"Add Favorite,Add Favorite in New Group,-,"_s;
        QTest::newRow("plain") << int(AllGroup) << QString()
                               << u"Exclude,-,"_s + favourite + u"Show in Finder"_s;
        QTest::newRow("excluded") << int(AllGroup) << u"excluded"_s
                                  << u"Include,-,"_s + favourite + u"Show in Finder"_s;
        QTest::newRow("favourite among all")
            << int(All1DGroup) << u"favourite"_s << u"Exclude,-,Show in Finder"_s;
        QTest::newRow("hidden favourite")
            << int(UserGroup) << u"favourite running hidden"_s
            << u"Move to New Group,Remove Favorite,-,Show in Finder,-,Show,Quit"_s;
        QTest::newRow("running") << int(RunningGroup) << u"running"_s
                                 << u"Exclude,-,"_s + favourite + u"Show in Finder,-,Hide,Quit"_s;
    }

    void menu_holdsWhatFits()
    {
        QFETCH(int, group);
        QFETCH(QString, state);
        fill({ u"a"_s, u"b"_s });
        if (state.contains(u"excluded"_s)) {
            _manager->excludeApp(app(u"a"_s));
        }
        if (state.contains(u"favourite"_s)) {
            _manager->moveApp(app(u"a"_s), UserGroup, 0, 0);
        }
        if (state.contains(u"running"_s)) {
            _desktop->run({ app(u"a"_s)->path() });
        }
        _desktop->isShown = !state.contains(u"hidden"_s);
        showGroup(group);
        hover(u"a"_s);
        const std::unique_ptr<QMenu> menu(_view->contextualMenu());
        QVERIFY(menu);
        QStringList items;
        for (const QAction *action : menu->actions()) {
            items.append(action->isSeparator() ? u"-"_s : action->text());
        }
        QTEST(items.join(u','), "items");
    }

    void menu_actsOnItsApplication_whereverThatIsThen()
    {
        fill({ u"a"_s, u"b"_s, u"c"_s });
        const auto chosen = [this](const QString &name, const QString &item, auto meanwhile) {
            hover(name);
            const std::unique_ptr<QMenu> menu(_view->contextualMenu());
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
        _desktop->run({ app(u"a"_s)->path() });
        chosen(u"a"_s, u"Hide"_s, [] {});
        chosen(u"a"_s, u"Quit"_s, [] {});
        chosen(u"a"_s, u"Show in Finder"_s, [] {});
        QTRY_COMPARE(
            _desktop->launched(), QStringList({ u"hide a"_s, u"quit a"_s, u"reveal a"_s }));
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
        QSignalSpy next(
            &NotificationCenter::defaultCenter(), &NotificationCenter::N_SelectNextIconGroup);
        turn({ 0, -120 });
        QCOMPARE(_view->filterSubstring(), u"a"_s);
        turn({ 0, 240 });
        QCOMPARE(_view->filterSubstring(), QString());
        for (int i = 0; i < 5; ++i) {
            turn({ 60, 0 });
        }
        QCOMPARE(next.size(), 1);
    }

    void aScan_hidesTheGridOnlyWhenItTakesLong()
    {
        fill({ u"a"_s });
        const QImage before = _view->grab().toImage();
        _view->showProgressStep(1, 3, u"somewhere"_s);
        QCOMPARE(_view->grab().toImage(), before);
        QTRY_VERIFY((_view->showProgressStep(2, 3, {}), _view->grab().toImage() != before));
        _view->showProgressStep(0, 0, {});
        QCOMPARE(_view->grab().toImage(), before);
    }

private:
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

QTEST_MAIN(OTIconViewInputTest)
#include "OTIconViewInputTest.moc"
