// The windows beside the panel: the preferences with the options of the colour order, what to
// exclude, the tour, feedback, and newer versions.

#include "catalogue/OTApp.h"
#include "catalogue/OTAppManager.h"
#include "feedback/OFController.h"
#include "feedback/OpenFeedback.h"
#include "platform/Desktop.h"
#include "shell/OTController.h"
#include "shell/base/ProgramDocuments.h"
#include "shell/panel/OTWindow.h"
#include "shell/preferences/ColorSortingOptions.h"
#include "shell/preferences/ExclusionWindow.h"
#include "shell/preferences/PreferencesWindow.h"
#include "shell/preferences/SettingsAlerts.h"
#include "shell/welcome/OTWelcomeAssistant.h"
#include "support/NotificationCenter.h"
#include "support/UserDefaults.h"
#include "updates/UpdateWindow.h"
#include "updates/Updater.h"

#include <QApplication>
#include <QWindow>

namespace {

void closeIfVisible(QWidget *window)
{
    if (window && window->isVisible()) {
        window->close();
    }
}

} // namespace

// They ask this for what they show, also while they end.
OTController::~OTController()
{
    delete _prefWindow;
    delete _exclusionWindow;
    _welcomeAssistant.reset();
    _feedbackAssistant.reset();
}

bool OTController::isPrefsVisible() const
{
    return _prefWindow && _prefWindow->isVisible();
}

void OTController::openPrefs()
{
    if (isPrefsVisible()) {
        bringToFront(*_prefWindow);
        return;
    }
    activate();
    applicationOpenUntitledFile();
    if (!_mainWindow.isShown()) {
        return;
    }
    closeExclusionWindow();
    if (!_prefWindow) {
        _prefWindow = makePreferencesWindow();
    }
    updatePrefsQuitButton();
    _launchAtLogin.setObserving(true);
    readStartAtLogin();
    _prefWindow->showUnder(_mainWindow.sheetPosition());
    _mainMenu.setEnabled(MainMenu::Command::Preferences, !isPrefsVisible());
}

HotKeyChoice OTController::hotKeyChoice()
{
    return {
        .choose = [this](int code, int modifiers) { setHotKey(code, modifiers); },
        .problem = [this] { return _triggers.hotKeyProblem(); },
        .namesOfKey = [this](quint32 scanCode) { return _desktop.hotKey().namesOfKey(scanCode); },
        .advice = [this] { return _triggers.hotKeyAdvice(); },
    };
}

PreferencesWindow *OTController::makePreferencesWindow()
{
    const auto updates = _updater->canCheck() ? PreferenceTabs::UpdateChecks::Offered
                                              : PreferenceTabs::UpdateChecks::Absent;
    auto *const window =
        new PreferencesWindow(hotKeyChoice(), _desktop.items(), updates, &_mainWindow);
    connect(window, &PreferencesWindow::colorSortingOptionsWanted, this,
        &OTController::openColorSortingOptions);
    connect(&_launchAtLogin, &LaunchAtLoginController::problemChanged, window,
        &PreferencesWindow::setProblem);
    connect(window, &PreferencesWindow::quitWanted, this, [this] { quitApp(); });
    connect(window, &PreferencesWindow::exportWanted, this, [this, window](const QString &file) {
        SettingsAlerts::exportTo(file, _desktop.searchPaths(), *window);
    });
    connect(window, &PreferencesWindow::importWanted, this, [this, window](const QString &file) {
        SettingsAlerts::importFrom(file, _desktop.searchPaths(), *window);
    });
    connect(&_triggers, &Triggers::hotKeyProblemChanged, window,
        &PreferencesWindow::hotKeyProblemDidChange);
    addSheet(*window);
    return window;
}

void OTController::addSheet(Sheet &sheet)
{
    connect(&sheet, &QDialog::finished, this, &OTController::sheetDidEnd);
    connect(&sheet, &Sheet::uncovered, this, [this, &sheet] { bringToFront(sheet); });
}

void OTController::sheetDidEnd()
{
    if (!isPrefsVisible()) {
        _launchAtLogin.setObserving(false);
    }
    _userDefaults.synchronize();
    _mainMenu.setEnabled(MainMenu::Command::Preferences, !isPrefsVisible());
    if (!QApplication::activeModalWidget()) {
        bringToFront(_mainWindow);
    }
}

// Window managers differ in what they focus when a dialog closes, and some focus nothing, which is
// not to pass for the loss of the front.
void OTController::bringToFront(QWidget &window)
{
    const bool isPanel = &window == &_mainWindow;
    if (_mainWindow.isShown() && !_isHiding && !(isPanel && _mainWindow.isNonActivating())) {
        _activation.awaitFront(Activation::Loss::NotReported);
        _desktop.ownWindows().activate(*window.windowHandle(), {});
    }
}

// The panel takes neither key nor click while something modal lies on it.
void OTController::keepModalInFront()
{
    QWidget *const modal = QApplication::activeModalWidget();
    if (modal && modal->isVisible()
        && _desktop.ownWindows().activeWindow() == _mainWindow.windowHandle()) {
        bringToFront(*modal);
    }
}

void OTController::closePrefs()
{
    closeColorSortingOptions();
    closeIfVisible(_prefWindow);
}

void OTController::openColorSortingOptions()
{
    if (!isPrefsVisible()) {
        return;
    }
    if (!_prefColorSortingOptionsWindow) {
        auto *const window = new ColorSortingOptions(_prefWindow);
        connect(window, &ColorSortingOptions::resetWanted, &_appManager,
            &OTAppManager::resetColorSortingOptions);
        addSheet(*window);
        _prefColorSortingOptionsWindow = window;
    }
    if (!_prefColorSortingOptionsWindow->isVisible()) {
        const QPoint middle(_prefWindow->width() / 2, 0);
        _prefColorSortingOptionsWindow->showUnder(_prefWindow->mapToGlobal(middle));
    }
}

void OTController::closeColorSortingOptions()
{
    closeIfVisible(_prefColorSortingOptionsWindow);
}

void OTController::autoExcludeApps()
{
    if (_exclusionWindow && _exclusionWindow->isVisible()) {
        return;
    }
    activate();
    applicationOpenUntitledFile();
    if (!_mainWindow.isShown()) {
        return;
    }
    closePrefs();
    if (!_exclusionWindow) {
        _exclusionWindow = new ExclusionWindow(&_mainWindow);
        connect(_exclusionWindow, &ExclusionWindow::exclusionWanted, &_appManager,
            &OTAppManager::autoExcludeDockApps);
        addSheet(*_exclusionWindow);
    }
    _exclusionWindow->setNameSubstrings(OTApp::excludedNameSubstrings());
    _exclusionWindow->showUnder(_mainWindow.sheetPosition());
}

void OTController::closeExclusionWindow()
{
    closeIfVisible(_exclusionWindow);
}

void OTController::validateMenuItems()
{
    _mainMenu.setEnabled(MainMenu::Command::Preferences, !isPrefsVisible());
    // Documents may have come or gone since.
    const auto isThere = [](const QString &name) {
        return !ProgramDocuments::path(name).isEmpty();
    };
    _mainMenu.setEnabled(
        MainMenu::Command::Welcome, !isWelcomeVisible() && isThere(ProgramDocuments::welcome()));
    _mainMenu.setEnabled(MainMenu::Command::UserGuide, isThere(ProgramDocuments::userGuide()));
    _mainMenu.setEnabled(MainMenu::Command::Feedback, !_feedbackAssistant->isWindowVisible());
}

void OTController::openFeedback()
{
    activate();
    _feedbackAssistant->presentFeedbackPanelForFeature();
    showFeedback();
}

OFController *OTController::feedbackWindow()
{
    return &_feedbackAssistant->windowController();
}

// The front goes to the panel, unless the user goes on to another program.
void OTController::besideWindowDidEnd(int result)
{
    if (result == QDialog::Rejected) {
        bringToFront(_mainWindow);
    }
}

// With the form that was shown last.
void OTController::showFeedback()
{
    OFController &feedback = *feedbackWindow();
    connect(&feedback, &QDialog::finished, this, &OTController::besideWindowDidEnd,
        Qt::UniqueConnection);
    feedback.showFeedbackWindow();
    _desktop.ownWindows().activate(*feedback.windowHandle(), {});
}

void OTController::tellOfCheck()
{
    if (_mainWindow.isShown()) {
        Q_EMIT NotificationCenter::defaultCenter().N_UserMessage(
            tr("Looking for a newer version…"));
    }
}

void OTController::showUpdate()
{
    UpdateWindow &window = *_updater->window();
    connect(
        &window, &QDialog::finished, this, &OTController::besideWindowDidEnd, Qt::UniqueConnection);
    _desktop.ownWindows().activate(*window.windowHandle(), {});
}

// Those that were shown before the panel would lie below it.
void OTController::bringBesideWindowsToFront()
{
    bringWelcomeToFront();
    if (_feedbackAssistant->isWindowVisible()) {
        _desktop.ownWindows().activate(*feedbackWindow()->windowHandle(), {});
    }
    if (const UpdateWindow *const update = _updater->window()) {
        _desktop.ownWindows().activate(*update->windowHandle(), {});
    }
}

void OTController::openWelcome()
{
    if (!_welcomeAssistant) {
        const QString name = ProgramDocuments::welcome();
        const QString path = ProgramDocuments::path(name);
        auto document = path.isEmpty() ? nullptr : _desktop.pageRenderer().open(path);
        if (!document) {
            return;
        }
        _welcomeAssistant = std::make_unique<OTWelcomeAssistant>(
            std::move(document), name, hotKeyChoice(), [this] { return hotKeyName(); });
        connect(_welcomeAssistant.get(), &QDialog::finished, this,
            [this] { bringToFront(_mainWindow); });
    }
    if (!isWelcomeVisible()) {
        _welcomeAssistant->present();
    }
    bringWelcomeToFront();
}

QString OTController::hotKeyName() const
{
    return Triggers::isHotKeyWanted() ? _triggers.hotKeyString() : QString();
}

bool OTController::isWelcomeVisible() const
{
    return _welcomeAssistant && _welcomeAssistant->isWindowVisible();
}

void OTController::closeWelcome()
{
    if (isWelcomeVisible()) {
        _welcomeAssistant->close();
    }
}

void OTController::bringWelcomeToFront()
{
    if (isWelcomeVisible()) {
        _desktop.ownWindows().activate(*_welcomeAssistant->windowHandle(), {});
    }
}

// What a question is about to be asked on.
QWidget *OTController::topSheet() const
{
    for (QWidget *const sheet : { static_cast<QWidget *>(_prefColorSortingOptionsWindow),
             static_cast<QWidget *>(_prefWindow), static_cast<QWidget *>(_exclusionWindow) }) {
        if (sheet && sheet->isVisible()) {
            return sheet;
        }
    }
    return _mainWindow.isShown() ? &_mainWindow : nullptr;
}

void OTController::modifierKeysChanged(Qt::KeyboardModifiers modifiers)
{
    if (isPrefsVisible()) {
        _prefWindow->setHiddenPreferencesShown(modifiers.testFlag(Qt::AltModifier));
    }
}

void OTController::updatePrefsQuitButton()
{
    if (_prefWindow) {
        _prefWindow->setQuitButtonHidden(_access.hasMenuAccess());
    }
}
