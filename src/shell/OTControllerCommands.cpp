// What the user asks for by the menu, and other starts over the session.

#include "catalogue/OTApp.h"
#include "catalogue/OTAppManager.h"
#include "grid/OTIconView.h"
#include "icons/ProgramImages.h"
#include "platform/Desktop.h"
#include "shell/IconProgress.h"
#include "shell/OTController.h"
#include "shell/OTNSAppSubclass.h"
#include "shell/panel/OTWindow.h"
#include "support/Alerts.h"
#include "support/InfoDictionary.h"
#include "support/UserDefaults.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QDesktopServices>
#include <QUrl>

namespace {

// Between two pictures of the progress, in milliseconds.
constexpr int progressInterval = 100;
// For the keyboard, which a window manager may refuse, in milliseconds.
constexpr int longestKeyboardWait = 1000;
// Between two looks whether it has come: window managers name the active window before they give it
// the keyboard.
constexpr int keyboardLook = 3;
// Until a start shows the panel without waiting for the applications.
constexpr int longestSilentScan = 150;
constexpr QSize iconSize(128, 128);

QJsonValue pathOf(const AppRef &app)
{
    return app ? QJsonValue(app->path()) : QJsonValue();
}

} // namespace

// A script that asks for the panel types into it next, so it is answered when that has the
// keyboard.
void OTController::keepWaitingForKeyboard(const std::shared_ptr<void> &caller)
{
    const auto isDue = [this] {
        return !_mainWindow.isShown() || _mainWindow.isNonActivating()
            || _desktop.ownWindows().hasKeyboard(*_mainWindow.windowHandle());
    };
    if (!caller || isDue()) {
        return;
    }
    auto *const wait = new QTimer(this);
    const QDeadlineTimer deadline(longestKeyboardWait);
    connect(wait, &QTimer::timeout, wait, [wait, caller, isDue, deadline] {
        if (isDue() || deadline.hasExpired()) {
            wait->deleteLater();
        }
    });
    wait->start(keyboardLook);
}

void OTController::perform(const InstanceRequest &request)
{
    switch (request.verb) {
    case InstanceRequest::Verb::Open:
        openFiles(request.files);
        activate(request.stamp);
        applicationOpenUntitledFile(request.stamp);
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
    case InstanceRequest::Verb::Rescan:
        rescanAllApps(Sender::User);
        break;
    case InstanceRequest::Verb::Quit:
        quitApp(Quitting::AtOnce);
        break;
    case InstanceRequest::Verb::Status:
        break;
    }
    keepWaitingForKeyboard(request.caller);
}

void OTController::performCommand(MainMenu::Command command)
{
    switch (command) {
    case MainMenu::Command::ShowHidePanel:
        showHideMainWindow();
        break;
    case MainMenu::Command::About:
        openAbout();
        break;
    case MainMenu::Command::RescanAllApps:
        rescanAllApps(Sender::User);
        break;
    case MainMenu::Command::HomePage:
        openHomeURL();
        break;
    case MainMenu::Command::Quit:
        quitApp();
        break;
    }
}

void OTController::openMainMenu(const QPoint &position)
{
    _mainMenu.menu().popup(position);
}

void OTController::openAbout()
{
    activate();
    OTNSAppSubclass::orderFrontStandardAboutPanel(_info, _desktop.ownWindows());
}

void OTController::openHomeURL()
{
    QDesktopServices::openUrl(QUrl(_info.stringForKey(QStringLiteral("OTHomeURL"))));
}

// A user without a menu may have meant to close the panel.
void OTController::quitApp(Quitting quitting)
{
    const bool isMenuGone = _runningDockless && !_desktop.statusItem().isShown();
    if (quitting == Quitting::Asking && isMenuGone) {
        activate();
        const Alert alert { .style = Alert::Style::Warning,
            .messageText = tr("Are you sure you want to quit Ortu?"),
            .buttons = { tr("Quit"), tr("Don't Quit") },
            .safeButton = 1 };
        if (runAlert(alert) != 0) {
            return;
        }
    }
    // Asked to quit, Qt would ask the panel first, which fades and stays for that time.
    QCoreApplication::exit();
}

QJsonObject OTController::status() const
{
    const OTIconView &grid = _mainWindow.iconView();
    const AppRef selected = grid.appAtCoords(grid.selectedCoords());
    QJsonObject status {
        { QStringLiteral("visible"), _mainWindow.isShown() },
        { QStringLiteral("active"), isActive() },
        { QStringLiteral("group"), grid.groupShown() },
        { QStringLiteral("filter"), grid.filterSubstring() },
        { QStringLiteral("selected"), pathOf(selected) },
        { QStringLiteral("hotKey"), _hotKeyProblem.isEmpty() ? hotKeyString() : QJsonValue() },
        { QStringLiteral("scanning"), _appManager.isBusyScanning() },
    };
    if (!_hotKeyProblem.isEmpty()) {
        status.insert(QStringLiteral("hotKeyProblem"), _hotKeyProblem);
    }
    return status;
}

void OTController::setApplicationIcon()
{
    QApplication::setWindowIcon(ProgramImages::icon(QStringLiteral("ortu_icon")));
}

void OTController::showProgressStep(int step, int count)
{
    if (count < 1) {
        if (_lastProgress.isValid()) {
            _lastProgress.invalidate();
            _desktop.taskBarProgress().end();
            _mainWindow.setWindowIcon(QApplication::windowIcon());
        }
        return;
    }
    // A search that takes long is seen going on.
    if (_launchStamp && _launchTime.hasExpired(longestSilentScan)) {
        showLaunchedPanel();
    }
    if (_runningDockless
        || (_lastProgress.isValid() && !_lastProgress.hasExpired(progressInterval))) {
        return;
    }
    _lastProgress.start();
    _desktop.taskBarProgress().show(step, count);
    static const QImage blank = ProgramImages::picture(QStringLiteral("ortu_icon_blank"), iconSize);
    _mainWindow.setWindowIcon(QPixmap::fromImage(IconProgress::progressIcon(blank, step, count)));
}
