#include "shell/OTIconOverlayView.h"
#include "shell/OTNSAppSubclass.h"
#include "shell/PanelFixture.h"
#include "support/Alerts.h"
#include "support/InfoDictionary.h"

#include <QAbstractEventDispatcher>
#include <QDialog>
#include <QMenu>
#include <QTimer>

using namespace Qt::Literals::StringLiterals;

namespace {

// Whether a timer of this thread has about so many milliseconds to go; they are not exact.
bool isTimerEndingIn(int milliseconds)
{
    QAbstractEventDispatcher *const dispatcher = QAbstractEventDispatcher::instance();
    for (int id = 1; id < 1000; ++id) {
        const int left = dispatcher->remainingTime(id);
        if (left > milliseconds / 2 && left <= milliseconds + milliseconds / 20) {
            return true;
        }
    }
    return false;
}

} // namespace

class OTControllerTest : public PanelFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void aToggleDependsOnWhatIsThere_data();
    void aToggleDependsOnWhatIsThere();
    void aStartJustAfterActivation_doesNotHide();
    void lostFocusHides_aMovedPanelLater();
    void preferencesForFocusAreFollowed();
    void aPanelThatDoesNotActivate();
    void aHotKeyThatIsTaken_isToldOnThePanel();
    void accessIsCheckedAtLaunch_data();
    void accessIsCheckedAtLaunch();
    void aStatusItemWithoutAHost_isNoAccess();
    void theMenuKeyOpensTheMainMenu_whereNoIconIsSelected();
    void changedPreferencesAreAnswered();
    void quittingAsksWhoHasNoMenu_data();
    void quittingAsksWhoHasNoMenu();
    void launchingHasAnOrder();
    void theFirstLaunchExcludesByName_data();
    void theFirstLaunchExcludesByName();
    void aLaunchWithoutFocusHidesInTheEnd_data();
    void aLaunchWithoutFocusHidesInTheEnd();
    void anExplicitHideGivesTheFocusBack();
    void filesWaitOnTheStack_untilThePanelHides();
    void progressShowsInTaskBarAndIcon();
    void theDesktopIsChecked();
    void theAboutPanelGoesWithThePanel();
    void everyRequestIsPerformed();

private:
    void makeController()
    {
        _info = std::make_unique<InfoDictionary>();
        _controller = std::make_unique<OTController>(*_desktop, *_manager, *_window, *_info);
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

void OTControllerTest::init()
{
    setUp();
    _launchCount = 3;
    set("applicationLaunchCount", _launchCount);
    _alerts.clear();
    _answer = 0;
    _presenter = std::make_unique<Alerts::PresenterScope>([this](const Alert &alert, QWidget *) {
        _alerts.append(alert.messageText);
        _desktop->journal.append(u"alert"_s);
        return _answer;
    });
}

void OTControllerTest::cleanup()
{
    _presenter.reset();
    _controller.reset();
    tearDown();
}

void OTControllerTest::aToggleDependsOnWhatIsThere_data()
{
    QTest::addColumn<bool>("isActive");
    QTest::addColumn<bool>("isVisible");
    QTest::addColumn<bool>("isMoved");
    QTest::addColumn<QString>("does");
    QTest::addColumn<bool>("isVisibleThen");

    QTest::newRow("active, hidden") << true << false << false << u"front"_s << true;
    QTest::newRow("active, visible")
        << true << true << false << u"raise,activate other,lower"_s << false;
    QTest::newRow("active, moved")
        << true << true << true << u"raise,activate other,lower"_s << false;
    QTest::newRow("inactive, hidden") << false << false << false << u"front"_s << true;
    QTest::newRow("inactive, visible") << false << true << false << QString() << false;
    QTest::newRow("inactive, moved") << false << true << true << u"front"_s << true;
}

void OTControllerTest::aToggleDependsOnWhatIsThere()
{
    QFETCH(const bool, isActive);
    QFETCH(const bool, isVisible);
    QFETCH(const bool, isMoved);
    QFETCH(const QString, does);
    QFETCH(const bool, isVisibleThen);
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
    QCOMPARE(isShown(), isVisible);
    // Fading, so that it is there to be raised.
    _desktop->movement.isStill = false;

    _controller->showHideMainWindow({ .time = 77, .startupId = {} });

    QCOMPARE(_desktop->journal.join(u','), does);
    QCOMPARE(isShown(), isVisibleThen);
    if (isVisibleThen) {
        QCOMPARE(_desktop->windows.lastTime, 77U);
    }
}

void OTControllerTest::aStartJustAfterActivation_doesNotHide()
{
    launch();
    lowerAll();
    QVERIFY(!isShown());
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
    QVERIFY(isShown());
    QVERIFY(_controller->isActive());
}

void OTControllerTest::lostFocusHides_aMovedPanelLater()
{
    launch();
    QVERIFY(isShown());
    lowerAll();
    QVERIFY(!isShown());
    QVERIFY(!isTimerEndingIn(30'000));

    _controller->showMainWindow();
    moveAway();
    lowerAll();
    QVERIFY(isShown());
    QVERIFY(isTimerEndingIn(30'000));
    _desktop->windows.bringToFront(_window->windowHandle());
    QVERIFY(!isTimerEndingIn(30'000));
    QVERIFY(isShown());
    // Hidden for another reason, it leaves nothing to wait for.
    lowerAll();
    _controller->hideMainWindow();
    QVERIFY(!isTimerEndingIn(30'000));

    _controller->showMainWindow();
    _controller->startWindowCloseTimerWithTimeInterval(0.01);
    QTRY_VERIFY(!isShown());
}

void OTControllerTest::preferencesForFocusAreFollowed()
{
    set("hideOnResignActive", true);
    launch();
    moveAway();
    lowerAll();
    QVERIFY(!isShown());
    QVERIFY(!isTimerEndingIn(30'000));

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

void OTControllerTest::aPanelThatDoesNotActivate()
{
    set("nonActivatingPanel", true);
    launch();
    _desktop->runInFront(u"/apps/other"_s);
    QVERIFY(isShown());
    QVERIFY(_desktop->windows.activeWindow() == _window->windowHandle());
    QCOMPARE(_desktop->windows.level, OwnWindows::Level::Raised);
    QVERIFY(!_controller->isActive());
    // The program has not lost what it never had.
    lowerAll();
    QVERIFY(isShown());

    _controller->explicitHideMainWindow();
    QVERIFY(!isShown());
    QVERIFY(!_desktop->journal.contains(u"activate other"_s));
    _controller->showHideMainWindow();
    QVERIFY(isShown());
    _controller->showHideMainWindow();
    QVERIFY(!isShown());

    // An alert hangs on it, and it stays.
    _controller->showHideMainWindow();
    set("showIconInDock", false);
    QCOMPARE(_alerts.size(), 1);
    QVERIFY(isShown());
}

// It may still find one, so the warning waits a little.
void OTControllerTest::aStatusItemWithoutAHost_isNoAccess()
{
    set("showIconInDock", false);
    set("hotKeyCode", -1);
    _desktop->item.hasHost = false;

    launch();

    QVERIFY(!_controller->hasMenuAccess());
    QVERIFY(!_controller->hasMouseAccess());
    QVERIFY(_alerts.isEmpty());
    QTRY_COMPARE(_alerts.size(), 1);
    QVERIFY(_alerts[0].startsWith(u"You have no access"_s));
}

void OTControllerTest::aHotKeyThatIsTaken_isToldOnThePanel()
{
    _desktop->key.whyNot = u"another program holds this key"_s;
    for (int i = 0; i < 2; ++i) {
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^no hot key: another program"_s));
    }
    launch();
    const MessageBubble &message = _window->overlay().message();
    QCOMPARE(message.text(),
        _controller->hotKeyString() + u" does not summon Ortu: another program holds this key."_s);
    // Told again only when it is news.
    _window->overlay().setMessage({});
    Q_EMIT _desktop->key.registrationChanged(_desktop->key.whyNot);
    QCOMPARE(message.text(), QString());
}

void OTControllerTest::accessIsCheckedAtLaunch_data()
{
    QTest::addColumn<bool>("statusItem");
    QTest::addColumn<bool>("dockIcon");
    QTest::addColumn<int>("hotSpot");
    QTest::addColumn<int>("hotKey");
    QTest::addColumn<QString>("access");
    QTest::addColumn<QString>("alert");

    const QString none = u"You have no access"_s;
    const QString onlyKey = u"You only have access"_s;
    QTest::newRow("as it comes") << true << true << 0 << 48 << u"menu mouse keys"_s << QString();
    QTest::newRow("nothing") << false << false << 0 << -1 << QString() << none;
    QTest::newRow("a status item") << true << false << 0 << -1 << u"menu mouse"_s << QString();
    QTest::newRow("a dock icon") << false << true << 0 << -1 << u"menu mouse"_s << QString();
    QTest::newRow("a hot spot") << false << false << 2 << -1 << u"mouse"_s << QString();
    QTest::newRow("no hot spot") << false << false << -2 << -1 << QString() << none;
    QTest::newRow("a hot key") << false << false << 0 << 0 << u"keys"_s << onlyKey;
}

void OTControllerTest::accessIsCheckedAtLaunch()
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
    if (_controller->hasMenuAccess()) {
        found.append(u"menu"_s);
    }
    if (_controller->hasMouseAccess()) {
        found.append(u"mouse"_s);
    }
    if (_controller->hasKeyboardAccess()) {
        found.append(u"keys"_s);
    }
    QCOMPARE(found.join(u' '), access);
    QCOMPARE(_controller->isAppRunningDockless(), !dockIcon);
    QCOMPARE(_desktop->windows.taskBar,
        dockIcon ? OwnWindows::TaskBar::Listed : OwnWindows::TaskBar::Skipped);
    QCOMPARE(_alerts.size(), alert.isEmpty() ? 0 : 1);
    QVERIFY(_alerts.value(0).startsWith(alert));
    QVERIFY(!_alerts.value(0).contains(u"%1"_s));
    if (hotKey == 0) {
        QVERIFY(_alerts[0].endsWith(u"\n\n"_s + _controller->hotKeyString()));
        QVERIFY(!_controller->hotKeyString().isEmpty());
    }

    // Who does not want to be told again is not.
    _controller.reset();
    _window.reset();
    _alerts.clear();
    set("showNoUIAccessWarning", false);
    set("showNoMouseAccessWarning", false);
    ++_launchCount;
    launch();
    QCOMPARE(_alerts, QStringList());
}

void OTControllerTest::theMenuKeyOpensTheMainMenu_whereNoIconIsSelected()
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

void OTControllerTest::changedPreferencesAreAnswered()
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
    QVERIFY(_alerts[2].startsWith(u"You have no access"_s));
    QVERIFY(isShown());
}

void OTControllerTest::quittingAsksWhoHasNoMenu_data()
{
    QTest::addColumn<bool>("dockIcon");
    QTest::addColumn<bool>("statusItem");
    QTest::addColumn<int>("answer");
    QTest::addColumn<bool>("isAsked");
    QTest::addColumn<bool>("quits");

    QTest::newRow("with a dock icon") << true << false << 1 << false << true;
    QTest::newRow("with a status item") << false << true << 1 << false << true;
    QTest::newRow("without, Quit") << false << false << 0 << true << true;
    QTest::newRow("without, Don't Quit") << false << false << 1 << true << false;
}

void OTControllerTest::quittingAsksWhoHasNoMenu()
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

void OTControllerTest::launchingHasAnOrder()
{
    for (const char *key : { "showAppInStatusBar", "showIconInDock" }) {
        set(key, false);
    }
    fill(2);
    makeController();
    QStringList order;
    const auto note = [&order](
                          const QString &what) { return [&order, what] { order.append(what); }; };
    connect(_window.get(), &OTWindow::shown, _controller.get(), note(u"shown"_s));
    connect(
        _manager.get(), &OTAppManager::isBusyScanningChanged, _controller.get(), note(u"scan"_s));
    connect(_defaults.get(), &UserDefaults::changed, _controller.get(), [&](const QString &key) {
        if (key == u"applicationLaunchCount"_s) {
            order.append(u"count after %1 alerts"_s.arg(_alerts.size()));
        }
    });
    connect(&NotificationCenter::defaultCenter(),
        &NotificationCenter::applicationDidFinishLaunching, _controller.get(), note(u"ready"_s));
    _controller->showMainWindow();
    QVERIFY(!isShown());

    _controller->launch(InstanceRequest());
    QVERIFY(_controller->finishedLaunching());
    QTRY_VERIFY(order.contains(u"ready"_s));

    order.removeAll(u"scan"_s);
    QCOMPARE(order, QStringList({ u"shown"_s, u"count after 1 alerts"_s, u"ready"_s }));
}

void OTControllerTest::theFirstLaunchExcludesByName_data()
{
    QTest::addColumn<qint64>("launchCount");
    QTest::addColumn<qsizetype>("excluded");
    QTest::newRow("first") << qint64(0) << qsizetype(1);
    QTest::newRow("second") << qint64(1) << qsizetype(0);
}

void OTControllerTest::theFirstLaunchExcludesByName()
{
    QFETCH(const qint64, launchCount);
    QFETCH(const qsizetype, excluded);
    fill({ u"alpha"_s, u"Crash Reporter"_s });
    makeController();
    set("applicationLaunchCount", launchCount);

    _controller->launch(InstanceRequest());

    QCOMPARE(_manager->excludedApps1D().size(), excluded);
    QTRY_COMPARE(_defaults->integerForKey(u"applicationLaunchCount"_s), launchCount + 1);
}

void OTControllerTest::aLaunchWithoutFocusHidesInTheEnd_data()
{
    QTest::addColumn<bool>("comesLate");
    QTest::newRow("focus that never comes") << false;
    QTest::newRow("focus that comes late") << true;
}

void OTControllerTest::aLaunchWithoutFocusHidesInTheEnd()
{
    QFETCH(const bool, comesLate);
    _desktop->windows.isObedient = false;
    launch();
    QVERIFY(isShown());
    QVERIFY(isTimerEndingIn(1'000));
    if (comesLate) {
        _desktop->windows.bringToFront(_window->windowHandle());
        QVERIFY(!isTimerEndingIn(1'000));
        QVERIFY(isShown());
    } else {
        QTRY_VERIFY(!isShown());
    }
}

void OTControllerTest::anExplicitHideGivesTheFocusBack()
{
    _desktop->movement.isStill = false;
    launch();
    QStringList order;
    connect(_defaults.get(), &UserDefaults::changed, _controller.get(), [&](const QString &key) {
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
    QCOMPARE(
        _desktop->journal, QStringList({ u"raise"_s, u"activate other"_s, u"hide"_s, u"lower"_s }));
    QCOMPARE(_desktop->windows.level, OwnWindows::Level::Normal);
}

void OTControllerTest::filesWaitOnTheStack_untilThePanelHides()
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

void OTControllerTest::progressShowsInTaskBarAndIcon()
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

    // Who is not in the task bar has nothing there to show it.
    _controller.reset();
    _window.reset();
    set("showIconInDock", false);
    ++_launchCount;
    launch();
    Q_EMIT center.N_ShowProgressStep(1, 4, {});
    QCOMPARE(_desktop->journal, QStringList());
}

void OTControllerTest::theDesktopIsChecked()
{
    QDir(_home->path()).mkpath(u"library/Preferences"_s);
    QFile file(_home->filePath(u"library/Preferences/com.apple.spaces.plist"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("<?xml version=\"1.0\"?><plist version=\"1.0\"><dict><key>spaces</key>"
               "<array><string>one</string></array></dict></plist>");
    file.close();
    _desktop->library = _home->filePath(u"library"_s);

    launch();

    QCOMPARE(_alerts, QStringList { u"Mission Control currently contains multiple desktops."_s });
    QVERIFY(isShown());
}

void OTControllerTest::theAboutPanelGoesWithThePanel()
{
    launch();
    _controller->openAbout();
    const QPointer<QDialog> about = OTNSAppSubclass::standardAboutPanel();
    QVERIFY(about && about->isVisible());
    QVERIFY(_controller->isActive());
    QVERIFY(isShown());
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
    QVERIFY(OTNSAppSubclass::standardAboutPanel());
    QVERIFY(OTNSAppSubclass::standardAboutPanel()->isVisible());
    OTNSAppSubclass::standardAboutPanel()->close();
    QTRY_VERIFY(!OTNSAppSubclass::standardAboutPanel());
}

void OTControllerTest::everyRequestIsPerformed()
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
    QCOMPARE(_controller->status()[u"visible"_s].toBool(), true);
    QCOMPARE(_controller->status()[u"active"_s].toBool(), true);
    QCOMPARE(_controller->status()[u"group"_s].toInt(), 1);
    QVERIFY(_controller->status()[u"selected"_s].isNull());
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

    // Who asks for it by a verb gets it, whatever is preferred at launch.
    _controller.reset();
    _window.reset();
    ++_launchCount;
    launch({ .verb = Verb::Toggle, .files = {}, .stamp = {} });
    QVERIFY(isShown());
}

int main(int argc, char **argv)
{
    OTNSAppSubclass application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    OTControllerTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "OTControllerTest.moc"
