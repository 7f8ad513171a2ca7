// The start of the program, the checks that go with it, and what is done about changed preferences.

#include "catalogue/OTAppManager.h"
#include "platform/Desktop.h"
#include "shell/DesktopChecks.h"
#include "shell/OTController.h"
#include "shell/panel/OTWindow.h"
#include "shell/triggers/TriggerKeys.h"
#include "support/Alerts.h"
#include "support/InfoDictionary.h"
#include "support/NotificationCenter.h"
#include "support/UserDefaults.h"

#include <QApplication>
#include <QWidget>
#include <QWindow>

#include <utility>

namespace {

// How long the row of status icons may take to show ours, in milliseconds.
constexpr int longestTrayWait = 3000;

namespace Key {
const QString applicationLaunchCount = QStringLiteral("applicationLaunchCount");
const QString showIconInDock = QStringLiteral("showIconInDock");
const QString showNoMouseAccessWarning = QStringLiteral("showNoMouseAccessWarning");
const QString showNoUIAccessWarning = QStringLiteral("showNoUIAccessWarning");
const QString showWindowAtLaunch = QStringLiteral("showWindowAtLaunch");
} // namespace Key

// As the user reads it.
Alert information(const QString &message, const QString &text)
{
    return { .style = Alert::Style::Informational,
        .messageText = message,
        .informativeText = text,
        .buttons = { OTController::tr("Ok") } };
}

Alert warning(const QString &message, const QString &text)
{
    Alert alert = information(message, text);
    alert.style = Alert::Style::Warning;
    return alert;
}

} // namespace

void OTController::registerDefaults()
{
    OTWindow::registerDefaults();
    UserDefaults::standard().registerDefaults({
        { TriggerKeys::hotKeyCode, 48 },
        { TriggerKeys::hotKeyModifiers, 4096 },
        { QStringLiteral("startAtLogin"), false },
        { TriggerKeys::showAppInStatusBar, true },
        { TriggerKeys::statusBarTogglesWindow, true },
        { Key::showIconInDock, true },
        { QStringLiteral("showOnBecomeActive"), false },
        { QStringLiteral("hideOnResignActive"), false },
        { QStringLiteral("nonActivatingPanel"), false },
        { QStringLiteral("tabletMode"), false },
        { QStringLiteral("tabletHandedness"), 1 },
        { Key::showNoMouseAccessWarning, true },
        { Key::showNoUIAccessWarning, true },
        { TriggerKeys::cursorHotSpotLocation, 0 },
        { QStringLiteral("highlightHotSpots"), false },
        { QStringLiteral("cursorHotSpotDelay"), 0.35 },
        { QStringLiteral("groupToShowWhenWindowOpens"), 1 },
        { QStringLiteral("groupShownWhenWindowClosed"), -1 },
        { Key::showWindowAtLaunch, true },
    });
}

void OTController::launch(const std::optional<InstanceRequest> &request)
{
    applicationWillFinishLaunching();
    applicationDidFinishLaunching(request);
}

// An information property list that makes the program an agent is overruled by the preference.
void OTController::applicationWillFinishLaunching()
{
    _runningDockless = _info.boolForKey(QStringLiteral("LSUIElement"))
        && !_userDefaults.boolForKey(Key::showIconInDock);
    _mainWindow.setTaskBar(
        _runningDockless ? OTWindow::TaskBar::Skipped : OTWindow::TaskBar::Listed);
    setupEventTap();
}

void OTController::applicationDidFinishLaunching(const std::optional<InstanceRequest> &request)
{
    _finishedLaunching = true;
    // A request for the panel is answered with it.
    if (request
        && (request->verb != InstanceRequest::Verb::Activate
            || _userDefaults.boolForKey(Key::showWindowAtLaunch))) {
        _launchStamp = request->stamp;
        _launchTime.start();
    }
    // First, so that the panel comes with its applications and at their size.
    rescanAllApps(Sender::Program);
    const qint64 launchCount = _userDefaults.integerForKey(Key::applicationLaunchCount);
    if (launchCount == 0) {
        _appManager.autoExcludeNamedApps();
    }
    showLaunchedPanel();
    if (request) {
        openFiles(request->files);
    }
    // Once the panel has been drawn: that must not wait for the disk.
    QTimer::singleShot(0, this, [this, launchCount] {
        setApplicationIcon();
        checkAccess();
        _userDefaults.setObject(Key::applicationLaunchCount, launchCount + 1);
        checkDesktop();
        if (_mainWindow.isShown() && !isInFront()) {
            awaitFront();
            _isLossPostponed = true;
        }
        Q_EMIT NotificationCenter::defaultCenter().applicationDidFinishLaunching();
    });
}

void OTController::showLaunchedPanel()
{
    if (const auto stamp = std::exchange(_launchStamp, std::nullopt)) {
        applicationOpenUntitledFile(*stamp);
    }
}

// A status item that is still on its way is no reason to warn.
void OTController::checkAccess()
{
    if (!hasMouseAccess() && _userDefaults.boolForKey(TriggerKeys::showAppInStatusBar)) {
        QTimer::singleShot(longestTrayWait, this, &OTController::warnOfMissingAccess);
    } else {
        warnOfMissingAccess();
    }
}

void OTController::warnOfMissingAccess()
{
    if (!hasMouseAccess() && !hasKeyboardAccess()
        && _userDefaults.boolForKey(Key::showNoUIAccessWarning)) {
        bringAlertToFront();
        alertIfNoAccess();
    } else if (!hasMouseAccess() && _userDefaults.boolForKey(Key::showNoMouseAccessWarning)) {
        bringAlertToFront();
        alertIfNoMouseAccess();
    }
}

// The panel at once, and the alert that is about to be shown as soon as it is there: without a
// panel it is the only window of the program.
void OTController::bringAlertToFront()
{
    activate();
    const auto bring = [this] {
        const QWidget *const alert = QApplication::activeModalWidget();
        if (alert != nullptr && alert->windowHandle() != nullptr) {
            _desktop.ownWindows().activate(*alert->windowHandle(), {});
        }
    };
    QMetaObject::invokeMethod(this, bring, Qt::QueuedConnection);
}

void OTController::checkDesktop()
{
    const QString folder = _desktop.searchPaths().libraryFolder(SearchPaths::Domain::User)
        + QStringLiteral("/Preferences");
    if (!DesktopChecks::isOrtuHappyWithMissionControl(folder, _info.bundleIdentifier())) {
        runAlert(warning(tr("Mission Control currently contains multiple desktops."),
            tr("For Ortu to function properly, please control-click on Ortu's Dock icon and "
               "assign it to 'All Desktops'.")));
    }
}

void OTController::rescanAllApps(Sender sender)
{
    const int group = OTWindow::groupToShowWhenWindowOpens();
    if (sender == Sender::User) {
        _appManager.clearIconsForAllApps();
    }
    _appManager.rescanAllAppsPrioritizingGroup(group);
}

// The item may be wanted, but have no place.
bool OTController::isStatusItemShown() const
{
    return _userDefaults.boolForKey(TriggerKeys::showAppInStatusBar)
        && _desktop.statusItem().isShown();
}

bool OTController::hasMenuAccess() const
{
    if (isStatusItemShown()) {
        return true;
    }
    return _finishedLaunching ? !_runningDockless : _userDefaults.boolForKey(Key::showIconInDock);
}

bool OTController::hasMouseAccess() const
{
    return isStatusItemShown() || _userDefaults.boolForKey(Key::showIconInDock)
        || _userDefaults.integerForKey(TriggerKeys::cursorHotSpotLocation) > 0;
}

bool OTController::hasKeyboardAccess() const
{
    return _userDefaults.integerForKey(TriggerKeys::hotKeyCode) >= 0;
}

void OTController::alertIfNoAccess()
{
    if (hasMouseAccess() || hasKeyboardAccess()) {
        return;
    }
    runAlert(warning(tr("You have no access to Ortu from the menu bar, the dock icon, a cursor hot "
                        "spot or a hot key."),
        tr("You will only be able to re-open the window by double-clicking the application icon "
           "in the Finder.")));
}

void OTController::alertIfNoMouseAccess()
{
    if (hasMouseAccess()) {
        return;
    }
    if (!hasKeyboardAccess()) {
        alertIfNoAccess();
        return;
    }
    runAlert(warning(
        tr("You only have access to Ortu using the following hot key:\n\n%1").arg(hotKeyString()),
        tr("You can also re-open the window by double-clicking the application icon in the "
           "Finder.")));
}

void OTController::preferenceDidChange(const QString &key)
{
    if (key == TriggerKeys::showAppInStatusBar) {
        if (!_userDefaults.boolForKey(key)) {
            alertIfNoMouseAccess();
        }
        updateStatusBar();
        Q_EMIT hasMenuAccessChanged();
    } else if (key == Key::showIconInDock) {
        showIconInDockDidChange();
        Q_EMIT hasMenuAccessChanged();
    } else if (key == TriggerKeys::statusBarTogglesWindow) {
        updateStatusBar();
    } else if (key == TriggerKeys::cursorHotSpotLocation) {
        updateCursorHotSpot();
    } else if (key == TriggerKeys::hotKeyCode || key == TriggerKeys::hotKeyModifiers) {
        if (!_isSettingHotKey) {
            Q_EMIT hotKeyStringChanged();
            registerHotKey();
        }
    }
}

void OTController::showIconInDockDidChange()
{
    if (!_finishedLaunching) {
        return;
    }
    if (!std::exchange(_haveAlertedUserAboutRequiredRestart, true)) {
        runAlert(information(tr("You must restart Ortu for this option to take effect."), {}));
    }
    alertIfNoMouseAccess();
}
