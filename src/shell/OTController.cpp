#include "shell/OTController.h"

#include "catalogue/OTApp.h"
#include "catalogue/OTAppManager.h"
#include "feedback/OFController.h"
#include "feedback/OpenFeedback.h"
#include "grid/OTIconView.h"
#include "grid/dragging/DropStack.h"
#include "grid/drawing/MenuColors.h"
#include "platform/Desktop.h"
#include "shell/OTNSAppSubclass.h"
#include "shell/panel/OTWindow.h"
#include "shell/panel/PanelButton.h"
#include "shell/preferences/PreferencesWindow.h"
#include "shell/selector/OTIconOverlayView.h"
#include "shell/welcome/OTWelcomeAssistant.h"
#include "support/Alerts.h"
#include "support/InfoDictionary.h"
#include "support/NotificationCenter.h"
#include "support/UserDefaults.h"
#include "updates/UpdateWindow.h"
#include "updates/Updater.h"

#include <QApplication>
#include <QDialog>
#include <QScopedValueRollback>
#include <QWindow>

#include <utility>

namespace {

const QString homeUrlKey = QStringLiteral("OTHomeURL");

MainMenu::Addresses addressesOf(const InfoDictionary &info, const Updater &updater)
{
    MainMenu::Addresses known;
    known.setFlag(MainMenu::Address::HomePage, !info.stringForKey(homeUrlKey).isEmpty());
    known.setFlag(MainMenu::Address::Feedback, !OpenFeedback::submitUrl(info).isEmpty());
    known.setFlag(MainMenu::Address::Updates, updater.canCheck());
    return known;
}

} // namespace

OTController::OTController(Desktop &desktop, OTAppManager &appManager, OTWindow &mainWindow,
    const InfoDictionary &info, QObject *parent)
    : QObject(parent)
    , _desktop(desktop)
    , _appManager(appManager)
    , _mainWindow(mainWindow)
    , _info(info)
    , _userDefaults(UserDefaults::standard())
    , _updater(std::make_unique<Updater>(desktop.webClient(), info,
          [this](const Alert &alert) {
              bringAlertToFront();
              runAlert(alert);
          }))
    , _mainMenu(addressesOf(info, *_updater))
    , _activation(desktop.ownWindows(), mainWindow)
    , _memoryRelease(desktop.memory(), mainWindow)
    , _firstFrame(mainWindow)
    , _triggers(
          desktop, _mainMenu.statusItemMenu(),
          [this](const ActivationStamp &stamp) { showHideMainWindow(stamp); },
          [this](const ActivationStamp &stamp) { hotKeyPressed(stamp); })
    , _access(_triggers, [this](const Alert &alert) { runAlert(alert); })
    , _scanProgress(desktop.taskBarProgress(), mainWindow)
    , _launchAtLogin(desktop.loginItems())
    , _feedbackAssistant(std::make_unique<OpenFeedback>(desktop, info,
          [this](const Alert &alert, QWidget *window) { return runAlert(alert, window); }))
{
    _windowCloseTimer.setSingleShot(true);
    connect(&_windowCloseTimer, &QTimer::timeout, this, &OTController::hideMainWindow);
    awakeFromNib();
}

void OTController::awakeFromNib()
{
    connect(&_userDefaults, &UserDefaults::changed, this, &OTController::preferenceDidChange);
    const NotificationCenter &center = NotificationCenter::defaultCenter();
    connect(
        &center, &NotificationCenter::N_ShowProgressStep, this, &OTController::showProgressStep);
    connect(&center, &NotificationCenter::N_EventFlagsChanged, this,
        &OTController::modifierKeysChanged);
    connect(&center, &NotificationCenter::applicationOpenUntitledFile, this,
        [this] { applicationOpenUntitledFile(); });
    connect(&_activation, &Activation::didBecomeActive, this,
        &OTController::applicationDidBecomeActive);
    connect(&_activation, &Activation::willResignActive, this,
        &OTController::applicationWillResignActive);
    connect(&_desktop.ownWindows(), &OwnWindows::activeWindowChanged, this,
        &OTController::keepModalInFront);
    connect(&_desktop.runningApplications(), &RunningApplications::questionAsked, this,
        &OTController::implicitHideMainWindow);
    connect(&_mainWindow, &OTWindow::closeWanted, this, &OTController::explicitHideMainWindow);
    connect(&_mainWindow, &OTWindow::frontBackWanted, this, &OTController::deactivate);
    connect(&_mainWindow, &OTWindow::preferencesWanted, this, &OTController::openPrefs);
    connect(&_mainWindow, &OTWindow::prefsWanted, this, [this] {
        const QWidget &gear = _mainWindow.prefsButton();
        openMainMenu(gear.mapToGlobal(gear.rect().bottomLeft()));
    });
    connect(&_mainWindow, &OTWindow::hidden, this, [this] {
        // No icon can take the files any more.
        DropStack::sharedDropStack().free();
        // There may be room on the disk by now.
        _appManager.writeAgain();
        _userDefaults.writeAgain();
    });
    connect(&_mainWindow, &OTWindow::menuWanted, this, &OTController::openMainMenu);
    OTIconOverlayView *const overlay = &_mainWindow.overlay();
    connect(&_mainMenu.menu(), &QMenu::aboutToShow, overlay,
        [overlay] { overlay->setIsMenuOpen(true); });
    connect(&_mainMenu.menu(), &QMenu::aboutToHide, overlay,
        [overlay] { overlay->setIsMenuOpen(false); });
    _mainMenu.followHistory(_appManager);
    connect(&_mainMenu, &MainMenu::chosen, this, &OTController::performCommand);
    for (QMenu *const menu : { &_mainMenu.menu(), &_mainMenu.statusItemMenu() }) {
        followColors(*menu, [this] { return _mainWindow.iconView().colors(); });
        connect(menu, &QMenu::aboutToShow, this, &OTController::validateMenuItems);
    }
    connect(
        &_triggers, &Triggers::statusItemShownChanged, this, &OTController::hasMenuAccessChanged);
    connect(&_launchAtLogin, &LaunchAtLoginController::launchAtLoginChanged, this,
        &OTController::readStartAtLogin);
    connect(_updater.get(), &Updater::checkStarted, this, &OTController::tellOfCheck);
    connect(_updater.get(), &Updater::windowShown, this, &OTController::showUpdate);
    connect(&_access, &AccessCheck::willWarn, this, &OTController::bringAlertToFront);
    connect(this, &OTController::hasMenuAccessChanged, this, &OTController::updatePrefsQuitButton);
}

void OTController::showMainWindow(const ActivationStamp &stamp)
{
    if (_mainWindow.isShown() || !_finishedLaunching) {
        return;
    }
    if (!_activation.isInFront()) {
        _activation.awaitFront(Activation::Loss::NotReported);
    }
    _mainWindow.show(stamp);
    // That the panel's end took the focus away may not have been heard of yet.
    _activation.restartTime();
}

void OTController::applicationOpenUntitledFile(const ActivationStamp &stamp)
{
    showMainWindow(stamp);
    bringBesideWindowsToFront();
}

void OTController::hideMainWindow()
{
    const QScopedValueRollback<bool> hiding(_isHiding, true);
    closePrefs();
    closeExclusionWindow();
    if (_feedbackAssistant->isWindowVisible()) {
        _feedbackAssistant->windowController().close();
    }
    if (QDialog *const about = OTNSAppSubclass::standardAboutPanel()) {
        about->close();
    }
    // Hiding may be asked for again while the panel goes.
    if (_mainWindow.isShown() || isWelcomeVisible()) {
        _welcomeAssistantWasOpen = isWelcomeVisible();
        closeWelcome();
    }
    _mainMenu.menu().close();
    cancelWindowCloseTimer();
    _activation.stopAwaiting();
    _mainWindow.hide();
}

void OTController::implicitHideMainWindow()
{
    // A sheet moved aside leaves the way to other windows free, as to what is dragged from them.
    const bool isSheetMoved = isPrefsVisible() && _prefWindow->hasBeenMoved();
    if (_mainWindow.isShown() && (_mainWindow.hasBeenMoved() || isSheetMoved)) {
        startWindowCloseTimerWithTimeInterval(MovedPanelTime);
    } else {
        hideMainWindow();
    }
}

// Raised, so that the application that comes to the front does not cover it before it has faded.
void OTController::explicitHideMainWindow()
{
    if (!_mainWindow.isShown()) {
        hideMainWindow();
        return;
    }
    _mainWindow.raise();
    deactivate();
    hideMainWindow();
    _mainWindow.lower();
}

void OTController::activate(const ActivationStamp &stamp)
{
    if (!isActive() && !_mainWindow.isNonActivating() && _mainWindow.isShown()) {
        _desktop.ownWindows().activate(*_mainWindow.windowHandle(), stamp);
    }
}

// To the very window that was in front before, where the desktop knows it; its application may have
// others. Where nothing is left to give the front to, the desktop chooses what comes next.
void OTController::deactivate()
{
    if (_mainWindow.isNonActivating()) {
        return;
    }
    const OwnWindows::Former former = _desktop.ownWindows().giveFrontBack();
    const AppRef last =
        former == OwnWindows::Former::Unknown ? _appManager.lastActiveApp() : nullptr;
    if (last) {
        last->activate();
    } else if (former != OwnWindows::Former::InFront) {
        hideMainWindow();
    }
}

void OTController::showHideMainWindow(const ActivationStamp &stamp)
{
    const bool isShown = _mainWindow.isShown();
    if (isActive()) {
        if (isShown) {
            explicitHideMainWindow();
        } else {
            applicationOpenUntitledFile(stamp);
        }
    } else if (!isShown) {
        applicationOpenUntitledFile(stamp);
        // Once: a launch hides the panel without asking again what is open.
        if (std::exchange(_welcomeAssistantWasOpen, false)) {
            openWelcome();
        }
    } else if (_mainWindow.hasBeenMoved() && !_mainWindow.isNonActivating()) {
        activate(stamp);
    } else {
        hideMainWindow();
    }
}

// What is typed next is meant for the panel that comes up.
void OTController::hotKeyPressed(const ActivationStamp &stamp)
{
    if (_welcomeAssistant && _welcomeAssistant->takeHotKey()) {
        return;
    }
    showHideMainWindow(stamp);
    if (_mainWindow.isShown()) {
        _desktop.hotKey().handKeysTo(*_mainWindow.windowHandle());
    }
}

// The click that has made the program active is not to hide the panel as well.
void OTController::applicationShouldHandleReopen(const ActivationStamp &stamp)
{
    if (_activation.hasBeenActiveFor(ReopenGuard) && _mainWindow.isShown()) {
        explicitHideMainWindow();
        return;
    }
    activate(stamp);
    applicationOpenUntitledFile(stamp);
}

void OTController::openFiles(const QList<QUrl> &files)
{
    for (const QUrl &file : files) {
        DropStack::sharedDropStack().push(
            file.isLocalFile() ? QVariant(file.toLocalFile()) : QVariant(file));
    }
    _mainWindow.iconView().drags().offerDropStack();
}

void OTController::applicationDidBecomeActive()
{
    cancelWindowCloseTimer();
    if (_userDefaults.boolForKey(QStringLiteral("showOnBecomeActive")) && !_mainWindow.isShown()) {
        applicationOpenUntitledFile();
    }
    _desktop.modifierTap().setEnabled(true);
}

void OTController::applicationWillResignActive()
{
    _desktop.modifierTap().setEnabled(false);
    modifierKeysChanged({});
    // A question on the panel would be left without it, while its sheets go with it; and a panel
    // that does not activate the program may have become the one in front.
    if (_openAlerts > 0 || _activation.isInFront()) {
        return;
    }
    if (_activation.isLossPostponed()) {
        return;
    }
    implicitHideMainWindow();
    if (_userDefaults.boolForKey(QStringLiteral("hideOnResignActive")) && _mainWindow.isShown()) {
        QApplication::beep();
        hideMainWindow();
    }
}

// On the topmost sheet, or the panel, without a parent.
int OTController::runAlert(const Alert &alert, QWidget *parent)
{
    const QPointer<QWidget> window(parent);
    ++_openAlerts;
    const int answer = Alerts::run(alert, parent != nullptr ? parent : topSheet());
    --_openAlerts;
    // Window managers differ in what they focus when a dialog closes.
    if (_mainWindow.isShown() && !_activation.isInFront()) {
        _activation.awaitFront(Activation::Loss::Reported);
        if (window && window->isVisible()) {
            _desktop.ownWindows().activate(*window->windowHandle(), {});
        } else {
            activate();
        }
    }
    return answer;
}
