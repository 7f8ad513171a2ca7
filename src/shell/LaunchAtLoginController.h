// Whether the user's login starts the program, as the desktop has it now, and changes to that.
//
// Nothing is remembered: the user may have changed it in the settings of the session.

#pragma once

#include "platform/LoginItems.h"

class LaunchAtLoginController final : public QObject
{
    Q_OBJECT

public:
    // The items must outlive it.
    explicit LaunchAtLoginController(LoginItems &loginItems, QObject *parent = nullptr);
    ~LaunchAtLoginController() override;

    // This program, which login starts without showing the panel.
    static LoginItem appItem();

    bool launchAtLogin() const { return willLaunchAtLogin(appItem()); }
    bool willLaunchAtLogin(const LoginItem &item) const { return _loginItems.contains(item); }

    // Does nothing when it is so already. False when it fails, of which the user is told.
    bool setLaunchAtLogin(bool isLaunched);
    bool setLaunchAtLogin(bool isLaunched, const LoginItem &item);

    // While observing, changes by other programs are announced as well. Off at first.
    void setObserving(bool isObserving);

Q_SIGNALS:
    // What launchAtLogin() gives has changed.
    void launchAtLoginChanged();
    // Why the last change could not be made, in a sentence; empty once one has been made.
    void problemChanged(const QString &problem);

private:
    void announceChange();

    LoginItems &_loginItems;
    // As last announced.
    bool _isLaunched = false;
};
