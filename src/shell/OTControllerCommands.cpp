// What the user asks for by the menu, and other starts over the session.

#include "catalogue/OTApp.h"
#include "catalogue/OTAppManager.h"
#include "feedback/OpenFeedback.h"
#include "grid/OTIconView.h"
#include "icons/ProgramImages.h"
#include "platform/Desktop.h"
#include "shell/KeyboardWait.h"
#include "shell/OTController.h"
#include "shell/OTNSAppSubclass.h"
#include "shell/ProgramStatus.h"
#include "shell/base/Log.h"
#include "shell/base/ProgramDocuments.h"
#include "shell/panel/OTWindow.h"
#include "support/Alerts.h"
#include "support/InfoDictionary.h"
#include "support/NotificationCenter.h"
#include "updates/Updater.h"

#include <QApplication>
#include <QDesktopServices>
#include <QUrl>

namespace {

// Until a start shows the panel without waiting for the applications.
constexpr int longestSilentScan = 150;

} // namespace

void OTController::perform(const InstanceRequest &request)
{
    switch (request.verb) {
    case InstanceRequest::Verb::Open:
        activate(request.stamp);
        applicationOpenUntitledFile(request.stamp);
        // A panel that was about to go has given up what it offered.
        openFiles(request.files);
        break;
    case InstanceRequest::Verb::Activate:
        applicationShouldHandleReopen(request.stamp);
        break;
    case InstanceRequest::Verb::Toggle:
        showHideMainWindow(request.stamp);
        break;
    case InstanceRequest::Verb::Show:
        activate(request.stamp);
        applicationOpenUntitledFile(request.stamp);
        break;
    case InstanceRequest::Verb::Hide:
        explicitHideMainWindow();
        break;
    case InstanceRequest::Verb::Preferences:
        activate(request.stamp);
        applicationOpenUntitledFile(request.stamp);
        openPrefs();
        break;
    case InstanceRequest::Verb::Rescan:
        rescanAllApps(Sender::User);
        break;
    case InstanceRequest::Verb::Quit:
        quitApp(Quitting::AtOnce);
        break;
    case InstanceRequest::Verb::Status:
        break;
    }
    const auto isDue = [this] {
        return !_mainWindow.isShown() || _mainWindow.isNonActivating()
            || _desktop.ownWindows().hasKeyboard(*_mainWindow.windowHandle());
    };
    keepWaitingForKeyboard(request.caller, isDue, this);
}

void OTController::performCommand(MainMenu::Command command)
{
    switch (command) {
    case MainMenu::Command::ShowHidePanel:
        showHideMainWindow();
        break;
    case MainMenu::Command::Undo:
        _mainWindow.iconView().commands().undo();
        break;
    case MainMenu::Command::Redo:
        _mainWindow.iconView().commands().redo();
        break;
    case MainMenu::Command::Preferences:
        openPrefs();
        break;
    case MainMenu::Command::ExcludeApps:
        autoExcludeApps();
        break;
    case MainMenu::Command::About:
        openAbout();
        break;
    case MainMenu::Command::CheckForUpdates:
        checkForUpdates();
        break;
    case MainMenu::Command::UserGuide:
        openUserGuide();
        break;
    case MainMenu::Command::Welcome:
        openWelcome();
        break;
    case MainMenu::Command::RescanAllApps:
        rescanAllApps(Sender::User);
        break;
    case MainMenu::Command::HomePage:
        openHomeURL();
        break;
    case MainMenu::Command::Feedback:
        openFeedback();
        break;
    case MainMenu::Command::Quit:
        quitApp();
        break;
    }
}

void OTController::openMainMenu(const QPoint &position)
{
    validateMenuItems();
    _mainMenu.menu().popup(position);
}

void OTController::openAbout()
{
    activate();
    OTNSAppSubclass::orderFrontStandardAboutPanel(_info, _desktop.ownWindows());
}

void OTController::checkForUpdates()
{
    activate();
    _updater->checkForUpdates();
}

void OTController::openUserGuide()
{
    const QString path = ProgramDocuments::path(ProgramDocuments::userGuide());
    if (path.isEmpty() || QDesktopServices::openUrl(QUrl::fromLocalFile(path))) {
        return;
    }
    qCWarning(lcShell).noquote() << "no program opens" << path;
    Q_EMIT NotificationCenter::defaultCenter().N_UserMessage(
        tr("No program here opens PDF files. The user guide is %1.").arg(path));
}

void OTController::openHomeURL()
{
    QDesktopServices::openUrl(QUrl(_info.stringForKey(QStringLiteral("OTHomeURL"))));
}

bool OTController::isQuitConfirmed()
{
    // A user without a menu may have meant to close the panel.
    if (_access.isAppRunningDockless() && !_desktop.statusItem().isShown()) {
        activate();
        const Alert alert { .style = Alert::Style::Warning,
            .messageText = tr("Are you sure you want to quit Ortu?"),
            .buttons = { tr("Quit"), tr("Don't Quit") },
            .safeButton = 1 };
        if (runAlert(alert) != 0) {
            return false;
        }
    }
    if (_feedbackAssistant->isSending()) {
        activate();
        const Alert alert { .style = Alert::Style::Warning,
            .messageText = tr("Your feedback has not been sent yet."),
            .buttons = { tr("Wait"), tr("Quit") },
            .safeButton = 0 };
        return runAlert(alert) == 1;
    }
    return true;
}

void OTController::quitApp(Quitting quitting)
{
    closePrefs();
    if (quitting == Quitting::Asking && !isQuitConfirmed()) {
        return;
    }
    // Asked to quit, Qt would ask the panel first, which fades and stays for that time.
    QCoreApplication::exit();
}

QJsonObject OTController::status()
{
    if (_finishedLaunching) {
        _triggers.start();
    }
    return programStatus(_mainWindow, _appManager, _triggers, isActive());
}

void OTController::setApplicationIcon()
{
    QApplication::setWindowIcon(ProgramImages::icon(QStringLiteral("ortu_icon")));
}

void OTController::showProgressStep(int step, int count)
{
    // It would only make the icon in the task bar flicker.
    if (_appManager.isScanInBackground()) {
        return;
    }
    if (count < 1) {
        _scanProgress.end();
        return;
    }
    // A search that takes long is seen going on.
    if (_launchStamp && _launchTime.hasExpired(longestSilentScan)) {
        showLaunchedPanel();
    }
    if (!_access.isAppRunningDockless()) {
        _scanProgress.show(step, count);
    }
}
