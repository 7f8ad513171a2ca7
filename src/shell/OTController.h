// The program as a whole: its start, when the panel is shown and hidden, its commands, and what it
// does about changed preferences.
//
// Everything that summons the panel ends here and hands on when it was asked for,
// since the display gives the keyboard only to those who can tell.

#pragma once

#include "platform/ActivationStamp.h"
#include "platform/SingleInstance.h"
#include "shell/AccessCheck.h"
#include "shell/Activation.h"
#include "shell/FirstFrame.h"
#include "shell/LaunchAtLoginController.h"
#include "shell/MainMenu.h"
#include "shell/MemoryRelease.h"
#include "shell/ScanProgress.h"
#include "shell/triggers/Triggers.h"

#include <QElapsedTimer>
#include <QJsonObject>
#include <QObject>
#include <QPointer>
#include <QTimer>

#include <memory>
#include <optional>

class ColorSortingOptions;
class Desktop;
class ExclusionWindow;
class InfoDictionary;
class OFController;
struct HotKeyChoice;
class OpenFeedback;
class OTAppManager;
class OTWelcomeAssistant;
class OTWindow;
class PreferencesWindow;
class Sheet;
class Updater;
class UserDefaults;
struct Alert;

class OTController : public QObject
{
    Q_OBJECT

public:
    // Who starts a scan: the program itself, or the user, who wants to see every icon anew.
    enum class Sender { Program, User };
    // How the user's end of the program was asked for.
    enum class Quitting { Asking, AtOnce };

    // How long a second start goes on counting as part of the click that made the program active.
    static constexpr int ReopenGuard = 250;
    // How long a panel that the user has moved stays after the program has lost the focus.
    static constexpr double MovedPanelTime = 30;

    // All of them must outlive the controller.
    OTController(Desktop &desktop, OTAppManager &appManager, OTWindow &mainWindow,
        const InfoDictionary &info, QObject *parent = nullptr);
    ~OTController() override;

    // Registers the preferences of the program as a whole. To be called once, before anything reads
    // them.
    static void registerDefaults();

    // Starts the program's work: fills the catalogue, shows the panel where that is preferred, and
    // then does what the start was asked for; without a request, as when the session starts the
    // program to ask it for something in a moment, nothing is shown. Whatever the first frame does
    // not need follows it. To be called from the event loop, once.
    void launch(const std::optional<InstanceRequest> &request);
    bool finishedLaunching() const { return _finishedLaunching; }

    bool isActive() const { return _activation.isActive(); }

    void showMainWindow(const ActivationStamp &stamp = {});
    void hideMainWindow();
    // The program is losing the focus.
    void implicitHideMainWindow();
    // The user asks for the panel to go.
    void explicitHideMainWindow();
    // What the hot key and its like do.
    void showHideMainWindow(const ActivationStamp &stamp = {});
    // Shows the panel, whatever summoned it.
    void applicationOpenUntitledFile(const ActivationStamp &stamp = {});
    // A start of the program that runs already.
    void applicationShouldHandleReopen(const ActivationStamp &stamp = {});
    // Files and addresses that are given to the program wait on the drop stack.
    void openFiles(const QList<QUrl> &files);
    // What another start asks for.
    void perform(const InstanceRequest &request);

    void activate(const ActivationStamp &stamp = {});
    void deactivate();
    // Hides the panel after this time, unless the program becomes active before.
    void startWindowCloseTimerWithTimeInterval(double seconds)
    {
        _windowCloseTimer.start(int(seconds * 1000));
    }
    void cancelWindowCloseTimer() { _windowCloseTimer.stop(); }

    // What summons the panel, and whether the user can reach the program.
    Triggers &triggers() { return _triggers; }
    AccessCheck &access() { return _access; }
    // Chooses another hot key, by the key's code and the mask of its modifiers.
    void setHotKey(int hotKeyCode, int hotKeyModifiers);

    // Sheets on the panel, which is shown for them, and one on the preferences. Nothing happens
    // when they are open, or closed, already.
    void openPrefs();
    void closePrefs();
    void openColorSortingOptions();
    void closeColorSortingOptions();
    void autoExcludeApps();
    void closeExclusionWindow();
    void rescanAllApps(Sender sender);
    void openAbout();
    // Whether there is a newer version of the program.
    void checkForUpdates();
    // With the desktop's viewer.
    void openUserGuide();
    // The tour for those who are new; nothing happens where its document is missing.
    void openWelcome();
    void openHomeURL();
    // The window in which the user writes to the developers.
    void openFeedback();
    // Made for this where there is none yet; not shown by it.
    OFController *feedbackWindow();
    void quitApp(Quitting quitting = Quitting::Asking);
    void performCommand(MainMenu::Command command);
    void openMainMenu(const QPoint &position);

    // What other starts are told when they ask how things stand. Triggers that are still to be put
    // up are there by then.
    QJsonObject status();

Q_SIGNALS:
    // Whether a menu reaches the program may have changed.
    void hasMenuAccessChanged();

private:
    void awakeFromNib();
    void applicationWillFinishLaunching();
    void finishLaunching(qint64 launchCount, bool isTourDue);
    void showLaunchedPanel();
    void checkDesktop();
    void bringAlertToFront();

    void applicationDidBecomeActive();
    void applicationWillResignActive();
    void preferenceDidChange(const QString &key);

    PreferencesWindow *makePreferencesWindow();
    void addSheet(Sheet &sheet);
    void sheetDidEnd();
    void bringToFront(QWidget &window);
    void keepModalInFront();
    bool isPrefsVisible() const;
    void modifierKeysChanged(Qt::KeyboardModifiers modifiers);
    void updatePrefsQuitButton();
    void validateMenuItems();
    bool isWelcomeVisible() const;
    void closeWelcome();
    void bringWelcomeToFront();
    void showFeedback();
    void tellOfCheck();
    void showUpdate();
    void besideWindowDidEnd(int result);
    void bringBesideWindowsToFront();
    bool isQuitConfirmed();
    HotKeyChoice hotKeyChoice();
    QString hotKeyName() const;
    QWidget *topSheet() const;
    void readStartAtLogin();
    void hotKeyPressed(const ActivationStamp &stamp);
    void setApplicationIcon();
    void showProgressStep(int step, int count);
    int runAlert(const Alert &alert, QWidget *parent = nullptr);

    Desktop &_desktop;
    OTAppManager &_appManager;
    OTWindow &_mainWindow;
    const InfoDictionary &_info;
    UserDefaults &_userDefaults;
    std::unique_ptr<Updater> _updater;
    MainMenu _mainMenu;
    Activation _activation;
    MemoryRelease _memoryRelease;
    FirstFrame _firstFrame;
    Triggers _triggers;
    AccessCheck _access;
    ScanProgress _scanProgress;
    LaunchAtLoginController _launchAtLogin;
    // From their first opening on; the windows that they hang on own them.
    QPointer<PreferencesWindow> _prefWindow;
    QPointer<ColorSortingOptions> _prefColorSortingOptionsWindow;
    QPointer<ExclusionWindow> _exclusionWindow;
    // From its first opening on.
    std::unique_ptr<OTWelcomeAssistant> _welcomeAssistant;
    // When the panel was hidden.
    bool _welcomeAssistantWasOpen = false;
    std::unique_ptr<OpenFeedback> _feedbackAssistant;
    bool _isHiding = false;
    // Alerts that wait for their answer.
    int _openAlerts = 0;

    bool _finishedLaunching = false;
    // What the panel is to be shown with at the start, until it is, and the time since the start.
    std::optional<ActivationStamp> _launchStamp;
    QElapsedTimer _launchTime;
    QTimer _windowCloseTimer { this };
};
