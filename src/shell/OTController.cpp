#include "shell/OTController.h"

#include "catalogue/OTApp.h"
#include "catalogue/OTAppManager.h"
#include "grid/DropStack.h"
#include "grid/OTIconView.h"
#include "icons/IconLoader.h"
#include "platform/Desktop.h"
#include "shell/OTHotSpotWindow.h"
#include "shell/OTNSAppSubclass.h"
#include "shell/OTStatusItemView.h"
#include "shell/OTWindow.h"
#include "shell/PanelButton.h"
#include "support/Alerts.h"
#include "support/InfoDictionary.h"
#include "support/NotificationCenter.h"
#include "support/UserDefaults.h"

#include <QApplication>
#include <QDialog>
#include <QWindow>

namespace {

const QString homeUrlKey = QStringLiteral("OTHomeURL");

MainMenu::HomePage homePageOf(const InfoDictionary &info)
{
    return info.stringForKey(homeUrlKey).isEmpty() ? MainMenu::HomePage::Unknown
                                                   : MainMenu::HomePage::Known;
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
    , _mainMenu(homePageOf(info))
{
    _windowCloseTimer.setSingleShot(true);
    _frontTimer.setSingleShot(true);
    connect(&_windowCloseTimer, &QTimer::timeout, this,
        &OTController::mainWindowUnusedAndShouldBeHidden);
    connect(&_frontTimer, &QTimer::timeout, this, &OTController::hideUnlessFrontProcess);
    awakeFromNib();
}

OTController::~OTController() = default;

void OTController::awakeFromNib()
{
    connect(&_userDefaults, &UserDefaults::changed, this, &OTController::preferenceDidChange);
    const NotificationCenter &center = NotificationCenter::defaultCenter();
    connect(
        &center, &NotificationCenter::N_ShowProgressStep, this, &OTController::showProgressStep);
    connect(&center, &NotificationCenter::applicationOpenUntitledFile, this,
        [this] { applicationOpenUntitledFile(); });
    connect(&_desktop.ownWindows(), &OwnWindows::activeWindowChanged, this,
        &OTController::activeWindowDidChange);
    connect(&_mainWindow, &OTWindow::closeWanted, this, &OTController::explicitHideMainWindow);
    connect(&_mainWindow, &OTWindow::prefsWanted, this, [this] {
        const QWidget &gear = _mainWindow.prefsButton();
        openMainMenu(gear.mapToGlobal(gear.rect().bottomLeft()));
    });
    connect(&_mainWindow, &OTWindow::hidden, this, &OTController::giveMemoryBackSoon);
    connect(&IconLoader::sharedIconLoader(), &IconLoader::finished, this,
        &OTController::giveMemoryBackSoon);
    connect(&_mainWindow, &OTWindow::menuWanted, this, &OTController::openMainMenu);
    connect(&_mainMenu, &MainMenu::chosen, this, &OTController::performCommand);
    connectTriggers();
    registerHotKey();
    updateStatusBar();
    updateCursorHotSpot();
}

bool OTController::isActive() const
{
    const QWindow *const front = _desktop.ownWindows().activeWindow();
    const bool isPanel = front && front == _mainWindow.windowHandle();
    return front && !(isPanel && _mainWindow.isNonActivating());
}

void OTController::showMainWindow(const ActivationStamp &stamp)
{
    if (_mainWindow.isShown() || !_finishedLaunching) {
        return;
    }
    _mainWindow.show(stamp);
    // That the panel's end took the focus away may not have been heard of yet.
    if (_didBecomeActiveDate.isValid()) {
        _didBecomeActiveDate.start();
    }
}

void OTController::applicationOpenUntitledFile(const ActivationStamp &stamp)
{
    showMainWindow(stamp);
}

void OTController::hideMainWindow()
{
    if (QDialog *const about = OTNSAppSubclass::standardAboutPanel()) {
        about->close();
    }
    _mainMenu.menu().close();
    cancelWindowCloseTimer();
    _mainWindow.hide();
}

void OTController::implicitHideMainWindow()
{
    if (_mainWindow.isShown() && _mainWindow.hasBeenMoved()) {
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

void OTController::deactivate()
{
    const AppRef last = _appManager.lastActiveApp();
    if (!last) {
        hideMainWindow();
    } else if (!_mainWindow.isNonActivating()) {
        last->activate();
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
    } else if (_mainWindow.hasBeenMoved() && !_mainWindow.isNonActivating()) {
        activate(stamp);
    } else {
        hideMainWindow();
    }
}

// The click that has made the program active is not to hide the panel as well.
void OTController::applicationShouldHandleReopen(const ActivationStamp &stamp)
{
    const bool isActiveForLong =
        _didBecomeActiveDate.isValid() && _didBecomeActiveDate.hasExpired(ReopenGuard);
    if (isActiveForLong && _mainWindow.isShown()) {
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
}

// Once nobody is waiting for the program.
void OTController::giveMemoryBackSoon()
{
    QTimer::singleShot(MemoryPause, this, [this] {
        const bool isAtRest =
            !_mainWindow.isVisible() && IconLoader::sharedIconLoader().pendingCount() == 0;
        if (isAtRest) {
            _desktop.memory().giveBack();
        }
    });
}

void OTController::startWindowCloseTimerWithTimeInterval(double seconds)
{
    _windowCloseTimer.start(int(seconds * 1000));
}

void OTController::cancelWindowCloseTimer()
{
    _windowCloseTimer.stop();
}

void OTController::mainWindowUnusedAndShouldBeHidden()
{
    cancelWindowCloseTimer();
    hideMainWindow();
}

void OTController::activeWindowDidChange()
{
    const bool isActiveNow = isActive();
    if (isActiveNow == _isActive) {
        return;
    }
    _isActive = isActiveNow;
    if (isActiveNow) {
        applicationDidBecomeActive();
    } else {
        applicationWillResignActive();
        _didBecomeActiveDate.invalidate();
    }
}

void OTController::applicationDidBecomeActive()
{
    cancelWindowCloseTimer();
    _frontTimer.stop();
    if (_userDefaults.boolForKey(QStringLiteral("showOnBecomeActive"))) {
        showMainWindow();
    }
    _desktop.modifierTap().setEnabled(true);
    _didBecomeActiveDate.start();
}

void OTController::applicationWillResignActive()
{
    _desktop.modifierTap().setEnabled(false);
    // A question on the panel would be left without it; and a panel that does not activate the
    // program may have become the one in front.
    if (QApplication::activeModalWidget() || isInFront()) {
        return;
    }
    implicitHideMainWindow();
    if (_userDefaults.boolForKey(QStringLiteral("hideOnResignActive")) && _mainWindow.isShown()) {
        QApplication::beep();
        hideMainWindow();
    }
}

int OTController::runAlert(const Alert &alert)
{
    const int answer = Alerts::run(alert, _mainWindow.isShown() ? &_mainWindow : nullptr);
    // Lost meanwhile; the alert's own window may be named as the one in front for a moment longer.
    if (!_isActive && !isInFront() && _mainWindow.isShown() && !_frontTimer.isActive()) {
        applicationWillResignActive();
    }
    return answer;
}

bool OTController::isInFront() const
{
    return _desktop.ownWindows().activeWindow() != nullptr;
}
