#include "shell/OTNSAppSubclass.h"
#include "shell/PanelFixture.h"
#include "shell/selector/OTIconOverlayView.h"
#include "support/Alerts.h"
#include "support/InfoDictionary.h"

#include <QAbstractEventDispatcher>
#include <QDialog>
#include <QMenu>
#include <QTimer>

namespace {

// A timer of this thread that has about so many milliseconds to go; they are not exact. 0 when
// there is none.
int timerEndingIn(int milliseconds)
{
    QAbstractEventDispatcher *const dispatcher = QAbstractEventDispatcher::instance();
    for (int id = 1; id < 1000; ++id) {
        const int left = dispatcher->remainingTime(id);
        if (left > milliseconds / 2 && left <= milliseconds + milliseconds / 20) {
            return id;
        }
    }
    return 0;
}

} // namespace

class OTControllerTest : public PanelFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        setUp();
        _launchCount = 3;
        set("applicationLaunchCount", _launchCount);
        _alerts.clear();
        _answer = 0;
        _presenter =
            std::make_unique<Alerts::PresenterScope>([this](const Alert &alert, QWidget *) {
                _alerts.append(alert.messageText);
                return _answer;
            });
    }
    void cleanup()
    {
        _presenter.reset();
        _controller.reset();
        tearDown();
    }

    void aToggleDependsOnWhatIsThere_data()
    {
        QTest::addColumn<bool>("isActive");
        QTest::addColumn<bool>("isVisible");
        QTest::addColumn<bool>("isMoved");
        QTest::addColumn<QString>("does");
        const QString hides = u"raise,activate other,lower"_s;
        QTest::newRow("active, hidden") << true << false << false << u"front"_s;
        QTest::newRow("active, visible") << true << true << false << hides;
        QTest::newRow("active, moved") << true << true << true << hides;
        QTest::newRow("inactive, hidden") << false << false << false << u"front"_s;
        QTest::newRow("inactive, visible") << false << true << false << QString();
        QTest::newRow("inactive, moved") << false << true << true << u"front"_s;
    }
    void aToggleDependsOnWhatIsThere()
    {
        QFETCH(const bool, isActive);
        QFETCH(const bool, isVisible);
        QFETCH(const bool, isMoved);
        QFETCH(const QString, does);
        set("showWindowAtLaunch", isVisible);
        _desktop->windows.isObedient = isActive;
        launch();
        _desktop->runInFront(u"/apps/other"_s);
        QWidget another;
        if (isActive && !isVisible) {
            another.show();
            _desktop->windows.bringToFront(another.windowHandle());
        }
        if (isMoved) {
            moveAway();
        }
        QCOMPARE(_controller->isActive(), isActive);
        // Fading, so that it is there to be raised.
        _desktop->movement.isStill = false;
        _controller->showHideMainWindow({ .time = 77, .startupId = {} });
        QCOMPARE(_desktop->journal.join(u','), does);
        QCOMPARE(isShown(), does == u"front");
        QCOMPARE(_desktop->windows.lastTime == 77, does == u"front");
    }

    void aStartJustAfterActivation_doesNotHide()
    {
        launch();
        lowerAll();
        // Hidden and inactive: it comes, and the same click does not hide it.
        _controller->applicationShouldHandleReopen({ .time = 5, .startupId = {} });
        QVERIFY(isShown());
        QCOMPARE(_desktop->windows.lastTime, 5U);
        _controller->applicationShouldHandleReopen();
        QVERIFY(isShown());
        QElapsedTimer clock;
        clock.start();
        QTRY_VERIFY(clock.hasExpired(OTController::ReopenGuard + 10));
        _controller->applicationShouldHandleReopen();
        QVERIFY(!isShown());
        // A moved one that has lost the focus comes to the front first.
        _controller->showMainWindow();
        moveAway();
        lowerAll();
        QTRY_VERIFY(clock.hasExpired(2 * OTController::ReopenGuard + 20));
        _controller->applicationShouldHandleReopen();
        QVERIFY(isShown() && _controller->isActive());
    }

    void lostFocusHides_aMovedPanelLater()
    {
        launch();
        lowerAll();
        QVERIFY(!isShown() && !timerEndingIn(30'000));
        _controller->showMainWindow();
        moveAway();
        lowerAll();
        QVERIFY(isShown() && timerEndingIn(30'000));
        _desktop->windows.bringToFront(_window->windowHandle());
        QVERIFY(isShown() && !timerEndingIn(30'000));
        // Hidden for another reason, it leaves nothing to wait for.
        lowerAll();
        _controller->hideMainWindow();
        QVERIFY(!timerEndingIn(30'000));
        _controller->showMainWindow();
        _controller->startWindowCloseTimerWithTimeInterval(0.01);
        QTRY_VERIFY(!isShown());
    }

    void preferencesForFocusAreFollowed()
    {
        set("hideOnResignActive", true);
        launch();
        moveAway();
        lowerAll();
        QVERIFY(!isShown() && !timerEndingIn(30'000));
        QWidget another;
        another.show();
        _desktop->windows.bringToFront(another.windowHandle());
        QVERIFY(!isShown());
        lowerAll();
        set("showOnBecomeActive", true);
        _desktop->windows.bringToFront(another.windowHandle());
        QVERIFY(isShown());
        // From one of our windows to another nothing is lost.
        moveAway();
        _desktop->windows.bringToFront(another.windowHandle());
        QVERIFY(isShown());
    }

    void aPanelThatDoesNotActivate()
    {
        set("nonActivatingPanel", true);
        launch();
        _desktop->runInFront(u"/apps/other"_s);
        QVERIFY(isShown() && _desktop->windows.activeWindow() == _window->windowHandle());
        QCOMPARE(_desktop->windows.level, OwnWindows::Level::Raised);
        QVERIFY(!_controller->isActive());
        // The program has not lost what it never had.
        lowerAll();
        QVERIFY(isShown());
        _controller->explicitHideMainWindow();
        QVERIFY(!isShown() && !_desktop->journal.contains(u"activate other"_s));
        _controller->showHideMainWindow();
        QVERIFY(isShown());
        _controller->showHideMainWindow();
        QVERIFY(!isShown());
        // An alert hangs on it, and it stays.
        _controller->showHideMainWindow();
        set("showIconInDock", false);
        QVERIFY(isShown() && _alerts.size() == 1);
    }

    void aHotKeyThatIsTaken_isToldOnThePanel()
    {
        _desktop->key.whyNot = u"another program holds this key"_s;
        for (int i = 0; i < 2; ++i) {
            QTest::ignoreMessage(
                QtWarningMsg, QRegularExpression(u"^no hot key: another program"_s));
        }
        launch();
        const MessageBubble &message = _window->overlay().message();
        QCOMPARE(message.text(),
            _controller->triggers().hotKeyString()
                + u" does not summon Ortu: another program holds this key."_s);
        // Told again only when it is news.
        _window->overlay().setMessage({});
        Q_EMIT _desktop->key.registrationChanged(_desktop->key.whyNot);
        QCOMPARE(message.text(), QString());
    }

    void accessIsCheckedAtLaunch_data()
    {
        QTest::addColumn<bool>("statusItem");
        QTest::addColumn<bool>("dockIcon");
        QTest::addColumn<int>("hotSpot");
        QTest::addColumn<int>("hotKey");
        QTest::addColumn<QString>("access");
        QTest::addColumn<QString>("alert");
        const auto row = [](const char *name, bool item, bool icon, int spot, int key,
                             const QString &access, const QString &alert = {}) {
            QTest::newRow(name) << item << icon << spot << key << access << alert;
        };
        row("as it comes", true, true, 0, 48, u"menu mouse keys"_s);
        row("nothing", false, false, 0, -1, {}, u"You have no access"_s);
        row("a status item", true, false, 0, -1, u"menu mouse"_s);
        row("a dock icon", false, true, 0, -1, u"menu mouse"_s);
        row("a hot spot", false, false, 2, -1, u"mouse"_s);
        row("no hot spot", false, false, -2, -1, {}, u"You have no access"_s);
        row("a hot key", false, false, 0, 0, u"keys"_s, u"You only have access"_s);
    }
    void accessIsCheckedAtLaunch()
    {
        QFETCH(const bool, statusItem);
        QFETCH(const bool, dockIcon);
        QFETCH(const int, hotSpot);
        QFETCH(const int, hotKey);
        QFETCH(const QString, access);
        QFETCH(const QString, alert);
        set("showAppInStatusBar", statusItem);
        set("showIconInDock", dockIcon);
        set("cursorHotSpotLocation", hotSpot);
        set("hotKeyCode", hotKey);
        launch();
        QStringList found;
        const auto note = [&found](bool hasIt, const QString &name) {
            found += hasIt ? QStringList(name) : QStringList();
        };
        note(_controller->access().hasMenuAccess(), u"menu"_s);
        note(_controller->access().hasMouseAccess(), u"mouse"_s);
        note(_controller->access().hasKeyboardAccess(), u"keys"_s);
        QCOMPARE(found.join(u' '), access);
        QCOMPARE(_desktop->windows.taskBar,
            dockIcon ? OwnWindows::TaskBar::Listed : OwnWindows::TaskBar::Skipped);
        QCOMPARE(_alerts.size(), alert.isEmpty() ? 0 : 1);
        QVERIFY(_alerts.value(0).startsWith(alert) && !_alerts.value(0).contains(u"%1"_s));
        if (hotKey == 0) {
            QVERIFY(_alerts[0].endsWith(u"\n\n"_s + _controller->triggers().hotKeyString()));
        }
        // Who does not want to be told again is not.
        endController();
        _alerts.clear();
        set("showNoUIAccessWarning", false);
        set("showNoMouseAccessWarning", false);
        launch();
        QCOMPARE(_alerts, QStringList());
    }

    // It may still find one, so the warning waits a little.
    void aStatusItemWithoutAHost_isNoAccess()
    {
        set("showIconInDock", false);
        set("hotKeyCode", -1);
        _desktop->item.hasHost = false;
        launch();
        QVERIFY(!_controller->access().hasMenuAccess() && !_controller->access().hasMouseAccess());
        QVERIFY(_alerts.isEmpty());
        QTRY_COMPARE(_alerts.size(), 1);
        QVERIFY(_alerts[0].startsWith(u"You have no access"_s));
    }

    void theMenuKeyOpensTheMainMenu_whereNoIconIsSelected()
    {
        launch();
        QTRY_VERIFY(_window->isActiveWindow());
        const auto menuAfter = [this](Qt::Key key) {
            QTest::keyClick(_window->windowHandle(), key);
            auto *const menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
            return menu ? menu->actions().constFirst()->text() : QString();
        };
        QCOMPARE(menuAfter(Qt::Key_Menu), u"Show or Hide Ortu"_s);
        QApplication::activePopupWidget()->close();
        menuAfter(Qt::Key_Home);
        const QString &label = _window->overlay().label();
        QCOMPARE(label, u"app0"_s);
        _controller->openMainMenu({});
        QCOMPARE(label, QString());
        QApplication::activePopupWidget()->close();
        QCOMPARE(label, u"app0"_s);
        QCOMPARE(menuAfter(Qt::Key_Menu), u"Exclude"_s);
        QApplication::activePopupWidget()->close();
        // Of the status item's menu, no line is empty.
        QString items;
        for (const QAction *action : _desktop->item.menu->actions()) {
            items += action->isSeparator() ? u'-' : u'x';
        }
        QCOMPARE(items, u"x-xx-x"_s);
    }

    void changedPreferencesAreAnswered()
    {
        const QString restart = u"You must restart Ortu for this option to take effect."_s;
        fill(1);
        makeController();
        set("showIconInDock", false);
        QCOMPARE(_alerts, QStringList());
        set("showIconInDock", true);
        _controller->launch(InstanceRequest());
        QTRY_COMPARE(_defaults->integerForKey(u"applicationLaunchCount"_s), _launchCount + 1);
        set("showIconInDock", false);
        QCOMPARE(_alerts, QStringList { restart });
        set("showIconInDock", true);
        QCOMPARE(_alerts.size(), 1);
        set("showAppInStatusBar", false);
        QCOMPARE(_alerts.size(), 1);
        set("showIconInDock", false);
        QCOMPARE(_alerts.size(), 2);
        QVERIFY(_alerts[1].startsWith(u"You only have access"_s));
        set("hotKeyCode", -1);
        set("showAppInStatusBar", true);
        set("showAppInStatusBar", false);
        QCOMPARE(_alerts.size(), 3);
        QVERIFY(_alerts[2].startsWith(u"You have no access"_s) && isShown());
    }

    void quittingAsksWhoHasNoMenu_data()
    {
        QTest::addColumn<bool>("dockIcon");
        QTest::addColumn<bool>("statusItem");
        QTest::addColumn<int>("answer");
        QTest::addColumn<bool>("isAsked");
        QTest::addColumn<bool>("quits");
        const auto row = [](const char *name, bool icon, bool item, int answer, bool asks,
                             bool quits) {
            QTest::newRow(name) << icon << item << answer << asks << quits;
        };
        row("with a dock icon", true, false, 1, false, true);
        row("with a status item", false, true, 1, false, true);
        row("without, Quit", false, false, 0, true, true);
        row("without, Don't Quit", false, false, 1, true, false);
    }
    void quittingAsksWhoHasNoMenu()
    {
        QFETCH(const bool, dockIcon);
        QFETCH(const int, answer);
        QFETCH(const bool, isAsked);
        QFETCH(const bool, quits);
        QFETCH(const bool, statusItem);
        set("showIconInDock", dockIcon);
        _desktop->item.hasHost = statusItem;
        // A panel that fades away is there for a while.
        _desktop->movement.isStill = false;
        launch();
        _answer = answer;
        // Left in one way or the other; the panel must not hold it up.
        QTimer::singleShot(0, _controller.get(), [this] {
            _controller->quitApp();
            QTimer::singleShot(0, qApp, [] { QCoreApplication::exit(9); });
        });
        const int result = QCoreApplication::exec();
        QCOMPARE(result, quits ? 0 : 9);
        QCOMPARE(_alerts,
            isAsked ? QStringList { u"Are you sure you want to quit Ortu?"_s } : QStringList());
    }

    void launchingHasAnOrder()
    {
        set("showAppInStatusBar", false);
        set("showIconInDock", false);
        set("applicationLaunchCount", 0);
        fill({ u"alpha"_s, u"Crash Reporter"_s });
        makeController();
        QStringList order;
        connect(_window.get(), &OTWindow::shown, _controller.get(), [&] { order += u"shown"_s; });
        connect(
            _defaults.get(), &UserDefaults::changed, _controller.get(), [&](const QString &key) {
                if (key == u"applicationLaunchCount"_s) {
                    order += u"count after %1 alerts"_s.arg(_alerts.size());
                }
            });
        connect(&NotificationCenter::defaultCenter(),
            &NotificationCenter::applicationDidFinishLaunching, _controller.get(),
            [&] { order += u"ready"_s; });
        _controller->showMainWindow();
        QVERIFY(!isShown());
        _controller->launch(InstanceRequest());
        QVERIFY(_controller->finishedLaunching());
        QTRY_VERIFY(order.contains(u"ready"_s));
        QCOMPARE(order, QStringList({ u"shown"_s, u"count after 1 alerts"_s, u"ready"_s }));
        // By name, at the first launch alone.
        QCOMPARE(_manager->excludedApps1D().size(), 1);
        _manager->includeApp(_manager->excludedApps1D().constFirst());
        _controller = std::make_unique<OTController>(*_desktop, *_manager, *_window, *_info);
        _controller->launch(InstanceRequest());
        QCOMPARE(_manager->excludedApps1D().size(), 0);
        QTRY_COMPARE(_defaults->integerForKey(u"applicationLaunchCount"_s), 2);
    }

    void aLaunchWithoutFocusHidesInTheEnd()
    {
        _desktop->windows.isObedient = false;
        launch();
        const int timer = timerEndingIn(1'000);
        QVERIFY(isShown() && timer != 0);
        _desktop->windows.bringToFront(_window->windowHandle());
        QVERIFY(isShown() && QAbstractEventDispatcher::instance()->remainingTime(timer) < 0);
        endController();
        launch();
        QTRY_VERIFY(!isShown());
    }

    void anExplicitHideGivesTheFocusBack()
    {
        _desktop->movement.isStill = false;
        launch();
        connect(
            _defaults.get(), &UserDefaults::changed, _controller.get(), [&](const QString &key) {
                if (key == u"groupShownWhenWindowClosed"_s) {
                    _desktop->journal.append(u"hide"_s);
                }
            });
        // Nobody to give it to.
        set("groupShownWhenWindowClosed", 3);
        _desktop->journal.clear();
        _controller->explicitHideMainWindow();
        QCOMPARE(_desktop->journal, QStringList({ u"raise"_s, u"hide"_s, u"lower"_s }));
        _desktop->runInFront(u"/apps/other"_s);
        _controller->showMainWindow();
        set("groupShownWhenWindowClosed", 3);
        _desktop->journal.clear();
        // As if asked for by a key.
        _window->performClose();
        QCOMPARE(_desktop->journal,
            QStringList({ u"raise"_s, u"activate other"_s, u"hide"_s, u"lower"_s }));
        QCOMPARE(_desktop->windows.level, OwnWindows::Level::Normal);
    }

    void filesWaitOnTheStack_untilThePanelHides()
    {
        const QUrl file = QUrl::fromLocalFile(u"/tmp/a b"_s);
        const QUrl address(u"https://example.org/x"_s);
        launch({ .verb = InstanceRequest::Verb::Open, .files = { file }, .stamp = {} });
        QCOMPARE(_dropStack.count(), 1);
        QCOMPARE(_dropStack.topObject(), QVariant(u"/tmp/a b"_s));
        lowerAll();
        _controller->perform(
            { .verb = InstanceRequest::Verb::Open, .files = { file, address }, .stamp = {} });
        QVERIFY(isShown());
        // The first was dropped when the panel had gone.
        QCOMPARE(_dropStack.count(), 2);
        QCOMPARE(_dropStack.topObjectAsURL(), address);
    }

    void progressShowsInTaskBarAndIcon()
    {
        launch();
        NotificationCenter &center = NotificationCenter::defaultCenter();
        const auto icon = [this] { return _window->windowIcon().pixmap(64).toImage(); };
        const QImage usual = icon();
        Q_EMIT center.N_ShowProgressStep(0, 0, {});
        QCOMPARE(_desktop->journal, QStringList());

        Q_EMIT center.N_ShowProgressStep(1, 4, {});
        const QImage quarter = icon();
        QVERIFY(quarter != usual);
        QElapsedTimer clock;
        clock.start();
        QTRY_VERIFY(clock.hasExpired(150));
        Q_EMIT center.N_ShowProgressStep(3, 4, {});
        QVERIFY(icon() != quarter);
        Q_EMIT center.N_ShowProgressStep(0, 0, {});
        QCOMPARE(_desktop->journal,
            QStringList({ u"progress 1/4"_s, u"progress 3/4"_s, u"progress ends"_s }));
        QCOMPARE(icon(), usual);
        // Nothing is there to show it where there is no entry in the task bar.
        endController();
        set("showIconInDock", false);
        launch();
        Q_EMIT center.N_ShowProgressStep(1, 4, {});
        QCOMPARE(_desktop->journal, QStringList());
    }

    void theDesktopIsChecked()
    {
        QDir(_home->path()).mkpath(u"library/Preferences"_s);
        QFile file(_home->filePath(u"library/Preferences/com.apple.spaces.plist"_s));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("<?xml version=\"1.0\"?><plist version=\"1.0\"><dict><key>spaces</key>"
                   "<array><string>one</string></array></dict></plist>");
        file.close();
        _desktop->library = _home->filePath(u"library"_s);
        launch();
        QCOMPARE(
            _alerts, QStringList { u"Mission Control currently contains multiple desktops."_s });
        QVERIFY(isShown());
    }

    void theAboutPanelGoesWithThePanel()
    {
        launch();
        _controller->openAbout();
        const QPointer<QDialog> about = OTNSAppSubclass::standardAboutPanel();
        QVERIFY(about && about->isVisible() && _controller->isActive() && isShown());
        _controller->openAbout();
        QCOMPARE(OTNSAppSubclass::standardAboutPanel(), about.data());
        QTRY_VERIFY(about->isActiveWindow());
        QTest::keyClick(about->windowHandle(), Qt::Key_Escape);
        QTRY_VERIFY(!about);
        QVERIFY(isShown());
        _controller->openAbout();
        lowerAll();
        QVERIFY(!isShown());
        // At once again: it has been closed, but may not be gone.
        _controller->openAbout();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(OTNSAppSubclass::standardAboutPanel()->isVisible());
        OTNSAppSubclass::standardAboutPanel()->close();
        QTRY_VERIFY(!OTNSAppSubclass::standardAboutPanel());
    }

    void everyRequestIsPerformed()
    {
        using Verb = InstanceRequest::Verb;
        set("showWindowAtLaunch", false);
        launch();
        QVERIFY(!isShown());
        const auto perform = [this](Verb verb) {
            _controller->perform({ .verb = verb, .files = {}, .stamp = {} });
        };
        perform(Verb::Show);
        QVERIFY(isShown());
        perform(Verb::Show);
        QVERIFY(isShown());
        const QJsonObject status = _controller->status();
        QVERIFY(status[u"visible"_s].toBool() && status[u"active"_s].toBool());
        QCOMPARE(status[u"group"_s].toInt(), 1);
        QVERIFY(status[u"selected"_s].isNull());
        perform(Verb::Toggle);
        QVERIFY(!isShown());
        perform(Verb::Hide);
        perform(Verb::Status);
        QVERIFY(!isShown());
        perform(Verb::Activate);
        QVERIFY(isShown());
        perform(Verb::Hide);
        QVERIFY(!isShown());
        Q_EMIT NotificationCenter::defaultCenter().applicationOpenUntitledFile();
        QVERIFY(isShown());
        // A verb decides, whatever is preferred at launch.
        endController();
        launch({ .verb = Verb::Toggle, .files = {}, .stamp = {} });
        QVERIFY(isShown());
    }

private:
    void makeController()
    {
        _info = std::make_unique<InfoDictionary>();
        _controller = std::make_unique<OTController>(*_desktop, *_manager, *_window, *_info);
    }
    void endController()
    {
        _controller.reset();
        _window.reset();
        ++_launchCount;
    }
    // A program that has been running for a while.
    void launch(const InstanceRequest &request = {})
    {
        fill(4);
        makeController();
        _controller->launch(request);
        const qint64 before = _launchCount;
        QTRY_COMPARE(_defaults->integerForKey(u"applicationLaunchCount"_s), before + 1);
        _desktop->journal.clear();
    }
    void lowerAll() const { _desktop->windows.bringToFront(nullptr); }
    bool isShown() const { return _window->isShown(); }
    void moveAway() const { dragPanelTo({ 5, 5 }); }
    std::unique_ptr<InfoDictionary> _info;
    std::unique_ptr<OTController> _controller;
    std::unique_ptr<Alerts::PresenterScope> _presenter;
    qint64 _launchCount = 3;
    QStringList _alerts;
    int _answer = 0;
};
int main(int argc, char **argv)
{
    OTNSAppSubclass application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    OTControllerTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "OTControllerTest.moc"
