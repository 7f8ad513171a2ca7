#include "feedback/OFController.h"
#include "shell/OTNSAppSubclass.h"
#include "shell/PanelFixture.h"
#include "shell/base/ProgramDocuments.h"
#include "shell/preferences/PreferencesWindow.h"
#include "shell/selector/OTIconOverlayView.h"
#include "support/Alerts.h"
#include "support/InfoDictionary.h"

#include <QCheckBox>
#include <QDesktopServices>
#include <QDialog>
#include <QLabel>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPointer>
#include <QTimer>

#include <algorithm>

class OTControllerTest : public PanelFixture
{
    Q_OBJECT

    // Whether the panel hides in half a minute.
    bool isHiddenLater() const
    {
        const QList<QTimer *> timers = _controller->findChildren<QTimer *>();
        return std::any_of(timers.cbegin(), timers.cend(),
            [](const QTimer *timer) { return timer->isActive() && timer->interval() == 30'000; });
    }

private Q_SLOTS:
    void init()
    {
        setUp();
        _launchCount = 3;
        set("applicationLaunchCount", _launchCount);
        _alerts.clear();
        _answer = 0;
        _whileAlert = {};
        save(guide(), "%PDF-1.4\n%%EOF\n");
        save(_documents.filePath(u"Welcome to Ortu.pdf"_s), "%PDF-1.4\n%%EOF\n");
        ProgramDocuments::setFolder(_documents.path());
        _presenter =
            std::make_unique<Alerts::PresenterScope>([this](const Alert &alert, QWidget *parent) {
                _alerts.append(alert.messageText);
                _alertParent = parent;
                if (_whileAlert) {
                    _whileAlert();
                }
                return _answer;
            });
    }
    void cleanup()
    {
        _presenter.reset();
        _controller.reset();
        _info = InfoDictionary();
        tearDown();
    }

    void aToggleDependsOnWhatIsThere()
    {
        const auto toggled = [this](bool isActive, bool isVisible, bool isMoved) {
            cleanup();
            init();
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
            // Fading, so that it is there to be raised. It remembers the group when it hides.
            _desktop->movement.isStill = false;
            set("groupShownWhenWindowClosed", 3);
            connect(_defaults.get(), &UserDefaults::changed, _controller.get(),
                [this] { _desktop->journal += u"hide"_s; });
            _controller->showHideMainWindow({ .time = 77, .startupId = {} });
            const bool hasTime = _desktop->windows.lastTime == 77;
            return _desktop->journal.join(u',') + (isShown() ? u" is shown"_s : QString())
                + (hasTime ? u" at the time"_s : QString());
        };
        const QString shows = u"front is shown at the time"_s;
        const QString hides = u"raise,activate other,hide,lower"_s;
        QCOMPARE(toggled(true, false, false), shows);
        QCOMPARE(toggled(true, true, false), hides);
        QCOMPARE(toggled(true, true, true), hides);
        QCOMPARE(toggled(false, false, false), shows);
        QCOMPARE(toggled(false, true, false), u"hide"_s);
        QCOMPARE(toggled(false, true, true), shows);
    }

    void aStartJustAfterActivation_doesNotHide()
    {
        launch();
        lowerAll();
        const auto isShownAfterReopen = [this] {
            _controller->applicationShouldHandleReopen({ .time = 5, .startupId = {} });
            return isShown();
        };
        // Hidden and inactive: it comes, and the same click does not hide it.
        QVERIFY(isShownAfterReopen() && _desktop->windows.lastTime == 5 && isShownAfterReopen());
        QElapsedTimer clock;
        clock.start();
        QTRY_VERIFY(clock.hasExpired(OTController::ReopenGuard + 10));
        QVERIFY(!isShownAfterReopen());
        // A moved one that has lost the focus comes to the front first.
        _controller->showMainWindow();
        moveAway();
        lowerAll();
        QTRY_VERIFY(clock.hasExpired(2 * OTController::ReopenGuard + 20));
        QVERIFY(isShownAfterReopen() && _controller->isActive());
    }

    void lostFocusHides_aMovedPanelLater()
    {
        launch();
        lowerAll();
        QVERIFY(!isShown() && !isHiddenLater());
        _controller->showMainWindow();
        moveAway();
        lowerAll();
        QVERIFY(isShown() && isHiddenLater());
        bringToFront(*_window);
        QVERIFY(isShown() && !isHiddenLater());
        // Hidden for another reason, it leaves nothing to wait for.
        lowerAll();
        _controller->hideMainWindow();
        QVERIFY(!isHiddenLater());
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
        QVERIFY(!isShown() && !isHiddenLater());
        QWidget another;
        another.show();
        bringToFront(another);
        QVERIFY(!isShown());
        lowerAll();
        set("showOnBecomeActive", true);
        bringToFront(another);
        QVERIFY(isShown());
        // From one of our windows to another nothing is lost.
        moveAway();
        bringToFront(another);
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
        const auto isShownAfterToggle = [this] {
            _controller->showHideMainWindow();
            return isShown();
        };
        QVERIFY(isShownAfterToggle() && !isShownAfterToggle() && isShownAfterToggle());
        // Another choice counts at once.
        set("nonActivatingPanel", false);
        QVERIFY(_controller->isActive());
        QCOMPARE(_desktop->windows.level, OwnWindows::Level::Normal);
        set("nonActivatingPanel", true);
        lowerAll();
        QVERIFY(isShown() && !_controller->isActive());
        // An alert hangs on it, and it stays.
        set("showIconInDock", false);
        QVERIFY(isShown() && _alerts.size() == 1);
    }

    void aHotKeyThatIsTaken_isToldOnThePanel()
    {
        _desktop->key.whyNot = u"another program holds this key"_s;
        expectWarning(u"^no hot key: another program"_s);
        expectWarning(u"^no hot key: another program"_s);
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

    void accessIsCheckedAtLaunch()
    {
        const auto isTold = [this](bool hasItem, bool hasIcon, int hotSpot, int hotKey,
                                const QString &start) {
            cleanup();
            init();
            set("showAppInStatusBar", hasItem);
            set("showIconInDock", hasIcon);
            set("cursorHotSpotLocation", hotSpot);
            set("hotKeyCode", hotKey);
            launch();
            const QStringList alerts = std::exchange(_alerts, {});
            const bool isListed = _desktop->windows.taskBar == OwnWindows::TaskBar::Listed;
            const QString keys =
                hotKey < 0 ? QString() : u"\n\n"_s + _controller->triggers().hotKeyString();
            // With these they are told no more.
            endController();
            set("showNoUIAccessWarning", false);
            set("showNoMouseAccessWarning", false);
            launch();
            const QString alert = alerts.value(0);
            return isListed == hasIcon && alerts.size() == int(!start.isEmpty())
                && alert.startsWith(start) && (alert.isEmpty() || alert.endsWith(keys))
                && !alert.contains(u"%1"_s) && _alerts.isEmpty();
        };
        QVERIFY(isTold(true, true, 0, 48, {}));
        QVERIFY(isTold(true, false, 0, -1, {}) && isTold(false, true, 0, -1, {}));
        QVERIFY(isTold(false, false, 2, -1, {}));
        QVERIFY(isTold(false, false, -2, -1, u"You have no access"_s));
        QVERIFY(isTold(false, false, 0, 0, u"You only have access"_s));
    }

    // It may still find one, so the warning waits a little.
    void aStatusItemWithoutAHost_isNoAccess()
    {
        set("showIconInDock", false);
        set("hotKeyCode", -1);
        _desktop->item.hasHost = false;
        launch();
        QVERIFY(_alerts.isEmpty());
        QTRY_COMPARE(_alerts.size(), 1);
        QVERIFY(_alerts[0].startsWith(u"You have no access"_s));
    }

    void theMenuKeyOpensTheMainMenu_whereNoIconIsSelected()
    {
        launch();
        QTRY_VERIFY(_window->isActiveWindow());
        const auto menuAfter = [this](Qt::Key key) {
            press(key);
            auto *const menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
            return menu && menu->close() ? menu->actions().constFirst()->text() : QString();
        };
        QCOMPARE(menuAfter(Qt::Key_Menu), u"Show or Hide Ortu"_s);
        menuAfter(Qt::Key_Home);
        QCOMPARE(menuAfter(Qt::Key_Menu), u"Exclude"_s);
        // Of the status item's menu, no line is empty.
        QString items;
        for (const QAction *action : _desktop->item.menu->actions()) {
            items += action->isSeparator() ? u'-' : u'x';
        }
        QCOMPARE(items, u"x-xx-xxxx-x"_s);
    }

    void theGuideOpens_whereItIsWhole()
    {
        launch();
        const auto isOffered = [this](const QByteArray &content) {
            save(guide(), content);
            QMenu &menu = *_desktop->item.menu;
            Q_EMIT menu.aboutToShow();
            const QList<QAction *> items = menu.actions();
            return std::any_of(items.cbegin(), items.cend(), [](const QAction *item) {
                return item->text() == u"Ortu User Guide" && item->isEnabled();
            });
        };
        // The log says it once.
        expectWarning(u"^cannot read .*Ortu User Guide.pdf: not a whole PDF file"_s);
        QVERIFY(!isOffered("%PDF-1.4\n") && !isOffered("%%EOF") && !isOffered(""));
        QFile::remove(guide());
        _controller->openUserGuide();
        QVERIFY(isOffered("%PDF-1.4\n%%EOF\n"));
        QDesktopServices::setUrlHandler(u"file"_s, this, "open");
        _controller->performCommand(MainMenu::Command::UserGuide);
        QDesktopServices::unsetUrlHandler(u"file"_s);
        QCOMPARE(_opened, QUrl::fromLocalFile(QFileInfo(guide()).canonicalFilePath()));
    }

    void menuHasWhatTheProgramKnowsAnAddressFor()
    {
        const auto hasAfter = [this](const char *key, const char *address, const QString &item) {
            cleanup();
            init();
            know(key, address);
            launch();
            return itemOf(item) != nullptr;
        };
        for (const auto &[key, item] :
            { std::pair("OFSubmitFeedbackURL", u"Feed"_s), std::pair("SUFeedURL", u"Updates"_s) }) {
            QVERIFY(!hasAfter("CFBundleSignature", "none", item));
            QVERIFY(hasAfter(key, "https://127.0.0.1:1/", item));
        }
        _controller->openPrefs();
        const auto boxes = _window->findChild<PreferencesWindow *>()->findChildren<QCheckBox *>();
        QVERIFY(std::any_of(boxes.begin(), boxes.end(),
            [](const QCheckBox *box) { return box->text().contains(u"new versions"_s); }));
    }

    void feedbackGoesWithThePanel_andKeepsWhatWasWritten()
    {
        know("OFSubmitFeedbackURL", "http://127.0.0.1:1/");
        launch();
        QTRY_VERIFY(_window->isActiveWindow());
        QAction *const item = itemOf(u"Feed"_s);
        QVERIFY(item);
        const auto isOffered = [this, item] {
            Q_EMIT _desktop->item.menu->aboutToShow();
            return item->isEnabled();
        };
        QVERIFY(isOffered());
        item->trigger();
        OFController *const feedback = _controller->feedbackWindow();
        QVERIFY(feedback->isVisible() && !isOffered());
        feedback->outlets().txtFeature->setPlainText(u"More"_s);
        _controller->hideMainWindow();
        QVERIFY(!feedback->isVisible() && isOffered());
        // The panel comes alone, and has the keyboard.
        _controller->showHideMainWindow();
        QVERIFY(isShown() && !feedback->isVisible());
        QCOMPARE(_desktop->windows.activeWindow(), _window->windowHandle());
        _controller->hideMainWindow();
        item->trigger();
        QCOMPARE(feedback->outlets().txtFeature->toPlainText(), u"More"_s);
        // Opened without the panel, it stays above it.
        QVERIFY(!isShown());
        _controller->applicationOpenUntitledFile();
        QVERIFY(isShown());
        QCOMPARE(_desktop->windows.activeWindow(), feedback->windowHandle());
    }

    void quittingWhileFeedbackIsSent_asks()
    {
        know("OFSubmitFeedbackURL", "http://127.0.0.1:1/");
        launch();
        // An alert that another program covers keeps the panel, and gets the front back.
        _whileAlert = [this] { lowerAll(); };
        OFController *const feedback = _controller->feedbackWindow();
        _controller->openFeedback();
        feedback->outlets().txtFeature->setPlainText(u"More"_s);
        feedback->sendFeedback();
        QVERIFY(feedback->isSending());
        expectWarning(u"^cannot send feedback to 127.0.0.1: there is no way to reach a server"_s);
        _controller->quitApp();
        QCOMPARE(_alerts, QStringList(u"Your feedback has not been sent yet."_s));
        QVERIFY(_alertParent == _window.get() && isShown() && _controller->isActive());
        QTRY_COMPARE(_alerts.size(), 2);
        QCOMPARE(_alerts[1], u"Can't Send Feedback"_s);
        QVERIFY(_alertParent == feedback && isShown());
        QCOMPARE(_desktop->windows.activeWindow(), feedback->windowHandle());
        feedback->reject();
        QCOMPARE(_desktop->windows.activeWindow(), _window->windowHandle());
    }

    void aCheckForUpdates_isToldOnThePanel()
    {
        know("SUFeedURL", "https://127.0.0.1:1/");
        launch();
        _whileAlert = [this] { lowerAll(); };
        expectWarning(u"^cannot look for updates at 127.0.0.1: there is no way to reach"_s);
        _controller->performCommand(MainMenu::Command::CheckForUpdates);
        QCOMPARE(_window->overlay().message().text(), u"Looking for a newer version…"_s);
        QTRY_COMPARE(_alerts, QStringList(u"Could not look for a newer version."_s));
        QVERIFY(_alertParent == _window.get() && isShown() && _controller->isActive());
    }

    void changedPreferencesAreAnswered()
    {
        fill(1);
        makeController();
        set("showIconInDock", false);
        QCOMPARE(_alerts, QStringList());
        set("showIconInDock", true);
        _controller->launch(InstanceRequest());
        QTRY_COMPARE(_defaults->integerForKey(u"applicationLaunchCount"_s), _launchCount + 1);
        set("showIconInDock", false);
        QCOMPARE(_alerts, QStringList(u"You must restart Ortu for this option to take effect."_s));
        set("showIconInDock", true);
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

    void startAtLogin_isWhatTheDesktopSays()
    {
        launch();
        GrantedLogin &login = _desktop->login;
        const auto isStored = [this] { return _defaults->boolForKey(u"startAtLogin"_s); };
        set("startAtLogin", true);
        QVERIFY(login.isThere);
        // Changed in the settings of the session, it is read again with the preferences, and
        // followed while they are open.
        login.changeOutside(false);
        QVERIFY(isStored());
        _controller->openPrefs();
        QVERIFY(!isStored());
        login.changeOutside(true);
        QVERIFY(isStored());
        _controller->closePrefs();
        login.changeOutside(false);
        QVERIFY(isStored());
        QCOMPARE(login.changes, 1);
        login.whyNot = u"Read-only file system"_s;
        login.isThere = true;
        _controller->openPrefs();
        set("startAtLogin", false);
        QVERIFY(isStored());
        const QString why = u"Ortu will go on starting at login: Read-only file system."_s;
        QCOMPARE(_window->overlay().message().text(), why);
        // The preferences cover the panel.
        const auto labels = _window->findChild<PreferencesWindow *>()->findChildren<QLabel *>();
        QVERIFY(std::any_of(labels.begin(), labels.end(),
            [&why](const QLabel *label) { return label->isVisible() && label->text() == why; }));
    }

    void quittingAsksWhereThereIsNoMenu()
    {
        const auto outcome = [this](bool hasIcon, bool hasItem, int answer) {
            cleanup();
            init();
            set("showIconInDock", hasIcon);
            _desktop->item.hasHost = hasItem;
            // A panel that fades away is there for a while.
            _desktop->movement.isStill = false;
            launch();
            _answer = answer;
            // Left in one way or the other; the panel must not hold it up.
            QTimer::singleShot(0, _controller.get(), [this] {
                _controller->quitApp();
                QTimer::singleShot(0, qApp, [] { QCoreApplication::exit(9); });
            });
            return QCoreApplication::exec() == 0 ? _alerts : _alerts + QStringList(u"runs"_s);
        };
        const QString asks = u"Are you sure you want to quit Ortu?"_s;
        QCOMPARE(outcome(true, false, 1), QStringList());
        QCOMPARE(outcome(false, true, 1), QStringList());
        QCOMPARE(outcome(false, false, 0), QStringList(asks));
        QCOMPARE(outcome(false, false, 1), QStringList({ asks, u"runs"_s }));
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
        const auto onChange = [&](const QString &key) {
            if (key == u"applicationLaunchCount"_s) {
                order += u"count after %1 alerts"_s.arg(_alerts.size());
            }
        };
        connect(_defaults.get(), &UserDefaults::changed, _controller.get(), onChange);
        connect(&NotificationCenter::defaultCenter(),
            &NotificationCenter::applicationDidFinishLaunching, _controller.get(),
            [&] { order += u"ready"_s; });
        _controller->showMainWindow();
        QVERIFY(!isShown());
        _controller->launch(InstanceRequest());
        QTRY_VERIFY(order.contains(u"ready"_s));
        QCOMPARE(order, QStringList({ u"shown"_s, u"count after 1 alerts"_s, u"ready"_s }));
        QCOMPARE(_manager->excludedApps1D().size(), 1);
    }

    void triggersWaitForTheFirstFrame_whereThereIsOne()
    {
        const auto arePutUp = [this] { return _controller->triggers().isStatusItemShown(); };
        fill(1);
        makeController();
        _controller->launch(InstanceRequest());
        QVERIFY(isShown() && !arePutUp());
        // Before it was drawn.
        _controller->hideMainWindow();
        QTRY_COMPARE(_defaults->integerForKey(u"applicationLaunchCount"_s), _launchCount + 1);
        QVERIFY(arePutUp());
        endController();
        set("showWindowAtLaunch", false);
        fill(1);
        makeController();
        _controller->launch(InstanceRequest());
        QVERIFY(arePutUp());
    }

    void aLaunchWithoutFocusHidesInTheEnd()
    {
        _desktop->windows.isObedient = false;
        launch();
        bringToFront(*_window);
        QVERIFY(isShown());
        // It waits no longer.
        lowerAll();
        QVERIFY(!isShown());
        endController();
        launch();
        QTRY_VERIFY(!isShown());
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
        const auto progress = [](int step, int count) {
            Q_EMIT NotificationCenter::defaultCenter().N_ShowProgressStep(step, count, {});
        };
        const auto icon = [this] { return _window->windowIcon().pixmap(64).toImage(); };
        const QImage usual = icon();
        progress(1, 4);
        QVERIFY(icon() != usual);
        progress(0, 0);
        QCOMPARE(_desktop->journal, QStringList({ u"1/4"_s, u"progress ends"_s }));
        QCOMPARE(icon(), usual);
    }

    void theAboutPanelGoesWithThePanel()
    {
        launch();
        _controller->openAbout();
        const QPointer<QDialog> about = OTNSAppSubclass::standardAboutPanel();
        QVERIFY(about && about->isVisible() && _controller->isActive() && isShown());
        QTRY_VERIFY(about->isActiveWindow());
        QTest::keyClick(about->windowHandle(), Qt::Key_Escape);
        QTRY_VERIFY(!about);
        QVERIFY(isShown());
        _controller->openAbout();
        lowerAll();
        QVERIFY(!isShown());
        QTRY_VERIFY(!OTNSAppSubclass::standardAboutPanel());
    }

    void everyRequestIsPerformed()
    {
        using Verb = InstanceRequest::Verb;
        set("showWindowAtLaunch", false);
        launch();
        QVERIFY(!isShown());
        const auto isShownAfter = [this](Verb verb) {
            _controller->perform({ .verb = verb, .files = {}, .stamp = {} });
            return isShown();
        };
        QVERIFY(isShownAfter(Verb::Show) && isShownAfter(Verb::Show));
        const QJsonObject status = _controller->status();
        QVERIFY(status[u"visible"_s].toBool() && status[u"active"_s].toBool());
        QCOMPARE(status[u"group"_s].toInt(), 1);
        QVERIFY(status[u"selected"_s].isNull());
        QVERIFY(!isShownAfter(Verb::Toggle) && !isShownAfter(Verb::Hide));
        QVERIFY(!isShownAfter(Verb::Status) && isShownAfter(Verb::Activate));
        QVERIFY(!isShownAfter(Verb::Hide));
        Q_EMIT NotificationCenter::defaultCenter().applicationOpenUntitledFile();
        QVERIFY(isShown());
        // A verb decides, whatever is preferred at launch.
        endController();
        launch({ .verb = Verb::Toggle, .files = {}, .stamp = {} });
        QVERIFY(isShown());
    }

public Q_SLOTS:
    void open(const QUrl &url) { _opened = url; }

private:
    QString guide() const { return _documents.filePath(u"Ortu User Guide.pdf"_s); }
    void makeController()
    {
        _controller.reset();
        _controller = std::make_unique<OTController>(*_desktop, *_manager, *_window, _info);
    }
    void endController()
    {
        _controller.reset();
        _window.reset();
        ++_launchCount;
    }
    // Of the menu; null where there is none.
    QAction *itemOf(const QString &text) const
    {
        const QList<QAction *> items = _desktop->item.menu->actions();
        const auto found = std::find_if(items.cbegin(), items.cend(),
            [&text](const QAction *item) { return item->text().contains(text); });
        return found == items.cend() ? nullptr : *found;
    }
    void know(const QByteArray &key, const QByteArray &value)
    {
        const QString path = _documents.filePath(u"Info.plist"_s);
        save(path,
            "<plist version=\"1.0\"><dict><key>" + key + "</key><string>" + value
                + "</string></dict></plist>");
        _info = InfoDictionary(path);
    }
    // A program that has been running for a while.
    void launch(const InstanceRequest &request = {})
    {
        fill(4);
        makeController();
        _controller->launch(request);
        QTRY_COMPARE(_defaults->integerForKey(u"applicationLaunchCount"_s), _launchCount + 1);
        _desktop->journal.clear();
    }
    void bringToFront(const QWidget &widget) const
    {
        _desktop->windows.bringToFront(widget.windowHandle());
    }
    void lowerAll() const { _desktop->windows.bringToFront(nullptr); }
    bool isShown() const { return _window->isShown(); }
    void moveAway() const { dragPanelTo({ 5, 5 }); }

    QTemporaryDir _documents;
    QUrl _opened;
    InfoDictionary _info;
    std::unique_ptr<OTController> _controller;
    std::unique_ptr<Alerts::PresenterScope> _presenter;
    qint64 _launchCount = 3;
    QStringList _alerts;
    QWidget *_alertParent = nullptr;
    std::function<void()> _whileAlert;
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
