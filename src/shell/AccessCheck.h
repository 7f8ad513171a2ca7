// Whether the user can reach the program, and the alerts when that is in doubt.

#pragma once

#include <QObject>
#include <QString>

#include <functional>

class Triggers;
class UserDefaults;
struct Alert;

class AccessCheck final : public QObject
{
    Q_OBJECT

public:
    // Runs an alert above the panel.
    using RunAlert = std::function<void(const Alert &alert)>;
    // The triggers must outlive the check.
    AccessCheck(const Triggers &triggers, RunAlert runAlert);

    // Registers its preferences. To be called once, before anything reads them.
    static void registerDefaults();

    // To be called once the start is over and it is known whether the program is in the task bar;
    // until then the preference stands for that.
    void setRunningDockless(bool isDockless);
    bool isAppRunningDockless() const { return _runningDockless; }

    // By a menu, with the mouse at all, by a key.
    bool hasMenuAccess() const;
    bool hasMouseAccess() const;
    bool hasKeyboardAccess() const;

    // Warns where there is no access; a status item that is still on its way is waited for.
    void checkAccess();
    void alertIfNoAccess();
    void alertIfNoMouseAccess();
    // What a changed preference for the task bar calls for.
    void showIconInDockDidChange();

Q_SIGNALS:
    // A warning is about to be shown that the user has not caused.
    void willWarn();

private:
    void warnOfMissingAccess();

    const Triggers &_triggers;
    RunAlert _runAlert;
    UserDefaults &_userDefaults;
    bool _hasStarted = false;
    bool _runningDockless = false;
    bool _haveAlertedUserAboutRequiredRestart = false;
};
