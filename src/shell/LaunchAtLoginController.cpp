#include "shell/LaunchAtLoginController.h"

#include "support/NotificationCenter.h"
#include "support/Translations.h"

#include <QCoreApplication>
#include <QGuiApplication>

#include <utility>

LaunchAtLoginController::LaunchAtLoginController(LoginItems &loginItems, QObject *parent)
    : QObject(parent)
    , _loginItems(loginItems)
{
    connect(&_loginItems, &LoginItems::changed, this, &LaunchAtLoginController::announceChange);
}

LaunchAtLoginController::~LaunchAtLoginController()
{
    _loginItems.setWatched(false);
}

LoginItem LaunchAtLoginController::appItem()
{
    return { .id = QGuiApplication::desktopFileName(),
        .name = QStringLiteral("Ortu"),
        .icon = QStringLiteral("ortu"),
        .program = QCoreApplication::applicationFilePath(),
        .arguments = { QStringLiteral("--service") } };
}

bool LaunchAtLoginController::setLaunchAtLogin(bool isLaunched)
{
    _isLaunched = launchAtLogin();
    if (_isLaunched == isLaunched) {
        return true;
    }
    const bool isDone = setLaunchAtLogin(isLaunched, appItem());
    announceChange();
    return isDone;
}

bool LaunchAtLoginController::setLaunchAtLogin(bool isLaunched, const LoginItem &item)
{
    const QString problem = _loginItems.setContained(item, isLaunched);
    if (problem.isEmpty()) {
        Q_EMIT problemChanged({});
        return true;
    }
    const QString sentence = isLaunched ? tr("%1 will not start at login: %2.")
                                        : tr("%1 will go on starting at login: %2.");
    const QString message = sentence.arg(item.name, Translations::ofReason(problem));
    Q_EMIT problemChanged(message);
    Q_EMIT NotificationCenter::defaultCenter().N_UserMessage(message);
    return false;
}

void LaunchAtLoginController::setObserving(bool isObserving)
{
    if (isObserving) {
        _loginItems.setWatched(true);
        _isLaunched = launchAtLogin();
    } else {
        _loginItems.setWatched(false);
    }
}

void LaunchAtLoginController::announceChange()
{
    const bool isLaunched = launchAtLogin();
    if (std::exchange(_isLaunched, isLaunched) != isLaunched) {
        Q_EMIT launchAtLoginChanged();
    }
}
