// The start of the program, the checks that go with it, and what is done about changed preferences.

#include "catalogue/OTAppManager.h"
#include "platform/Desktop.h"
#include "shell/DesktopChecks.h"
#include "shell/OTController.h"
#include "shell/panel/OTWindow.h"
#include "shell/triggers/TriggerKeys.h"
#include "shell/welcome/OTWelcomeAssistant.h"
#include "support/Alerts.h"
#include "support/InfoDictionary.h"
#include "support/NotificationCenter.h"
#include "support/UserDefaults.h"
#include "updates/Updater.h"

#include <QApplication>
#include <QWidget>
#include <QWindow>

#include <utility>

namespace {

using namespace std::chrono_literals;

// A session that starts has other work to do first.
constexpr std::chrono::milliseconds updatesWait = 10s;

namespace Key {
const QString applicationLaunchCount = QStringLiteral("applicationLaunchCount");
const QString showIconInDock = QStringLiteral("showIconInDock");
const QString startAtLogin = QStringLiteral("startAtLogin");
const QString showWindowAtLaunch = QStringLiteral("showWindowAtLaunch");
} // namespace Key

} // namespace

void OTController::registerDefaults()
{
    OTWindow::registerDefaults();
    Triggers::registerDefaults();
    AccessCheck::registerDefaults();
    OTWelcomeAssistant::registerDefaults();
    Updater::registerDefaults();
    // Repeats what the session's entries say.
    UserDefaults::standard().registerState({ { Key::startAtLogin, false } });
    UserDefaults::standard().registerDefaults({
        { QStringLiteral("showOnBecomeActive"), false },
        { QStringLiteral("hideOnResignActive"), false },
        { Key::showWindowAtLaunch, true },
    });
}

// What stands here is done before the first frame, in this order, each for the reason beside it.
// Everything else has its place in finishLaunching().
void OTController::launch(const std::optional<InstanceRequest> &request)
{
    // A window manager is told of it with the window.
    applicationWillFinishLaunching();
    _finishedLaunching = true;
    // A request for the panel is answered with it.
    if (request
        && (request->verb != InstanceRequest::Verb::Activate
            || _userDefaults.boolForKey(Key::showWindowAtLaunch))) {
        _launchStamp = request->stamp;
        _launchTime.start();
    }
    // The panel comes with its applications and at their size.
    rescanAllApps(Sender::Program);
    // What is excluded would be seen for a moment.
    const qint64 launchCount = _userDefaults.integerForKey(Key::applicationLaunchCount);
    if (launchCount == 0) {
        _appManager.excludeOnFirstStart();
    }
    showLaunchedPanel();
    if (request) {
        // The grid offers them on the icons that it draws.
        openFiles(request->files);
        // Asked for with the panel, so it comes with it.
        if (request->verb == InstanceRequest::Verb::Preferences) {
            openPrefs();
        }
    }
    const bool isPlainStart = request && request->verb == InstanceRequest::Verb::Activate;
    const bool isTourDue = isPlainStart && launchCount == 0 && OTWelcomeAssistant::isWanted();
    connect(&_firstFrame, &FirstFrame::passed, this,
        [this, launchCount, isTourDue] { finishLaunching(launchCount, isTourDue); });
    if (!_mainWindow.isShown()) {
        // The triggers are all that summons it.
        _triggers.start();
    }
    _firstFrame.await();
}

// An information property list that makes the program an agent is overruled by the preference.
void OTController::applicationWillFinishLaunching()
{
    const bool isDockless = _info.boolForKey(QStringLiteral("LSUIElement"))
        && !_userDefaults.boolForKey(Key::showIconInDock);
    _access.setRunningDockless(isDockless);
    _mainWindow.setTaskBar(isDockless ? OTWindow::TaskBar::Skipped : OTWindow::TaskBar::Listed);
}

// What the first frame does not need. What the user may miss comes first, what may show an alert
// and wait for its answer comes last.
void OTController::finishLaunching(qint64 launchCount, bool isTourDue)
{
    _triggers.start();
    setApplicationIcon();
    _desktop.icons().startWatching();
    _access.checkAccess();
    _userDefaults.setObject(Key::applicationLaunchCount, launchCount + 1);
    checkDesktop();
    if (isTourDue && _mainWindow.isShown()) {
        openWelcome();
    }
    if (_mainWindow.isShown() && !_activation.isInFront()) {
        _activation.awaitFront(Activation::Loss::Reported);
    }
    if (_updater->canCheck()) {
        QTimer::singleShot(updatesWait, _updater.get(), &Updater::checkForUpdatesInBackground);
    }
    // The catalogue begins to follow its folders with it.
    Q_EMIT NotificationCenter::defaultCenter().applicationDidFinishLaunching();
}

void OTController::showLaunchedPanel()
{
    if (const auto stamp = std::exchange(_launchStamp, std::nullopt)) {
        applicationOpenUntitledFile(*stamp);
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
        runAlert(Alert::warning(tr("Mission Control currently contains multiple desktops."),
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

void OTController::setHotKey(int hotKeyCode, int hotKeyModifiers)
{
    _triggers.chooseHotKey(hotKeyCode, hotKeyModifiers);
    _access.alertIfNoAccess();
    _triggers.registerHotKey();
}

void OTController::preferenceDidChange(const QString &key)
{
    if (key == TriggerKeys::showAppInStatusBar) {
        if (!Triggers::isStatusItemWanted()) {
            _access.alertIfNoMouseAccess();
        }
        _triggers.updateStatusBar();
        Q_EMIT hasMenuAccessChanged();
    } else if (key == Key::showIconInDock) {
        _access.showIconInDockDidChange();
        Q_EMIT hasMenuAccessChanged();
    } else if (key == Key::startAtLogin) {
        _launchAtLogin.setLaunchAtLogin(_userDefaults.boolForKey(key));
        readStartAtLogin();
    }
}

// The desktop has the last word. To store what it says changes nothing there.
void OTController::readStartAtLogin()
{
    _userDefaults.setObject(Key::startAtLogin, _launchAtLogin.launchAtLogin());
}
