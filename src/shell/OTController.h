// The program as a whole: its start, when the panel is shown and hidden, its commands, and what it
// does about changed preferences.
//
// The program is active while one of its windows is in front; a panel that does not activate it
// does not count. Everything that summons the panel ends here and hands on when it was asked for,
// since the display gives the keyboard only to those who can tell.

#pragma once

#include "platform/ActivationStamp.h"
#include "platform/SingleInstance.h"
#include "shell/MainMenu.h"

#include <QElapsedTimer>
#include <QJsonObject>
#include <QObject>
#include <QPointer>
#include <QTimer>

#include <memory>
#include <optional>

class Desktop;
class InfoDictionary;
class OTAppManager;
class OTHotSpotWindow;
class OTStatusItemView;
class OTWindow;
class QScreen;
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
    // How long after the panel is hidden memory is given back, in milliseconds.
    static constexpr int MemoryPause = 200;
    // How long a panel that has just been shown may wait for the focus, in milliseconds.
    static constexpr int FrontWait = 1000;
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
    // program to ask it for something in a moment, nothing is shown. To be called from the event
    // loop, once.
    void launch(const std::optional<InstanceRequest> &request);
    bool finishedLaunching() const { return _finishedLaunching; }

    bool isActive() const;
    bool isAppRunningDockless() const { return _runningDockless; }

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
    void startWindowCloseTimerWithTimeInterval(double seconds);
    void cancelWindowCloseTimer();

    // Whether the user can reach the program: by a menu, with the mouse at all, by a key.
    bool hasMenuAccess() const;
    bool hasMouseAccess() const;
    bool hasKeyboardAccess() const;
    // The hot key as people read it.
    QString hotKeyString() const;
    // Why there is none; empty while there is one.
    const QString &hotKeyProblem() const { return _hotKeyProblem; }
    // Chooses another one, by the key's code and the mask of its modifiers.
    void setHotKey(int hotKeyCode, int hotKeyModifiers);
    void alertIfNoAccess();
    void alertIfNoMouseAccess();

    void rescanAllApps(Sender sender);
    void openAbout();
    void openHomeURL();
    void quitApp(Quitting quitting = Quitting::Asking);
    void performCommand(MainMenu::Command command);
    void openMainMenu(const QPoint &position);

    // What other starts are told when they ask how things stand.
    QJsonObject status() const;

Q_SIGNALS:
    void hotKeyStringChanged();
    // Whether a menu reaches the program may have changed.
    void hasMenuAccessChanged();

private:
    void awakeFromNib();
    void applicationWillFinishLaunching();
    void applicationDidFinishLaunching(const std::optional<InstanceRequest> &request);
    void showLaunchedPanel();
    void checkAccess();
    void warnOfMissingAccess();
    bool isStatusItemShown() const;
    void checkDesktop();
    void awaitFront();
    void frontDidNotCome();
    void bringAlertToFront();
    // Whether a window of ours is in front, active or not.
    bool isInFront() const;

    void activeWindowDidChange();
    void applicationDidBecomeActive();
    void applicationWillResignActive();
    void mainWindowUnusedAndShouldBeHidden();
    void preferenceDidChange(const QString &key);

    void connectTriggers();
    void registerHotKey();
    void hotKeyPressed(const ActivationStamp &stamp);
    void takeHotKeyProblem(const QString &whyNot);
    void setupEventTap();
    void applicationDidChangeScreenParameters();
    void watchPrimaryScreen();
    void updateCursorHotSpot();
    void enableCursorHotSpot(int location);
    void updateStatusBar();
    void fillStatusItemMenu();
    void showIconInDockDidChange();
    void giveMemoryBackSoon();
    void setApplicationIcon();
    void showProgressStep(int step, int count);
    int runAlert(const Alert &alert);
    void keepWaitingForKeyboard(const std::shared_ptr<void> &caller);

    Desktop &_desktop;
    OTAppManager &_appManager;
    OTWindow &_mainWindow;
    const InfoDictionary &_info;
    UserDefaults &_userDefaults;
    MainMenu _mainMenu;
    QMenu _statusItemMenu;
    std::unique_ptr<OTStatusItemView> _appStatusItem;
    std::unique_ptr<OTHotSpotWindow> _hotSpotWin;
    QPointer<QScreen> _primaryScreen;
    QString _hotKeyProblem;
    bool _isSettingHotKey = false;

    bool _finishedLaunching = false;
    // What the panel is to be shown with at the start, until it is, and the time since the start.
    std::optional<ActivationStamp> _launchStamp;
    QElapsedTimer _launchTime;
    bool _runningDockless = false;
    bool _haveAlertedUserAboutRequiredRestart = false;
    bool _isActive = false;
    QTimer _windowCloseTimer;
    // Runs while a panel that has just been shown waits for the focus. A loss of the focus that is
    // reported meanwhile is an earlier one, and is dealt with only if the focus does not come.
    QTimer _frontTimer;
    bool _isLossPostponed = false;
    // Since the program became active; not valid while it is not.
    QElapsedTimer _didBecomeActiveDate;
    // Since the search for applications was last drawn into the icon.
    QElapsedTimer _lastProgress;
};
