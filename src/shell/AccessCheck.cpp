#include "shell/AccessCheck.h"

#include "shell/triggers/Triggers.h"
#include "support/Alerts.h"
#include "support/UserDefaults.h"

#include <QTimer>

#include <utility>

namespace {

// How long the row of status icons may take to show ours, in milliseconds.
constexpr int longestTrayWait = 3000;

namespace Key {
const QString showIconInDock = QStringLiteral("showIconInDock");
const QString showNoMouseAccessWarning = QStringLiteral("showNoMouseAccessWarning");
const QString showNoUIAccessWarning = QStringLiteral("showNoUIAccessWarning");
} // namespace Key

} // namespace

AccessCheck::AccessCheck(const Triggers &triggers, RunAlert runAlert)
    : _triggers(triggers)
    , _runAlert(std::move(runAlert))
    , _userDefaults(UserDefaults::standard())
{ }

void AccessCheck::registerDefaults()
{
    UserDefaults::standard().registerDefaults({
        { Key::showIconInDock, true },
        { Key::showNoMouseAccessWarning, true },
        { Key::showNoUIAccessWarning, true },
    });
}

void AccessCheck::setRunningDockless(bool isDockless)
{
    _hasStarted = true;
    _runningDockless = isDockless;
}

bool AccessCheck::hasMenuAccess() const
{
    return _triggers.isStatusItemShown()
        || (_hasStarted ? !_runningDockless : _userDefaults.boolForKey(Key::showIconInDock));
}

bool AccessCheck::hasMouseAccess() const
{
    return _triggers.isStatusItemShown() || _userDefaults.boolForKey(Key::showIconInDock)
        || Triggers::isHotSpotWanted();
}

bool AccessCheck::hasKeyboardAccess() const
{
    return Triggers::isHotKeyWanted();
}

void AccessCheck::checkAccess()
{
    if (!hasMouseAccess() && Triggers::isStatusItemWanted()) {
        QTimer::singleShot(longestTrayWait, this, &AccessCheck::warnOfMissingAccess);
    } else {
        warnOfMissingAccess();
    }
}

void AccessCheck::warnOfMissingAccess()
{
    if (!hasMouseAccess() && !hasKeyboardAccess()
        && _userDefaults.boolForKey(Key::showNoUIAccessWarning)) {
        Q_EMIT willWarn();
        alertIfNoAccess();
    } else if (!hasMouseAccess() && _userDefaults.boolForKey(Key::showNoMouseAccessWarning)) {
        Q_EMIT willWarn();
        alertIfNoMouseAccess();
    }
}

void AccessCheck::alertIfNoAccess()
{
    if (hasMouseAccess() || hasKeyboardAccess()) {
        return;
    }
    _runAlert(Alert::warning(
        tr("You have no access to Ortu from the menu bar, the dock icon, a cursor hot spot or a "
           "hot key."),
        tr("You will only be able to re-open the window by double-clicking the application icon "
           "in the Finder.")));
}

void AccessCheck::alertIfNoMouseAccess()
{
    if (hasMouseAccess()) {
        return;
    }
    if (!hasKeyboardAccess()) {
        alertIfNoAccess();
        return;
    }
    _runAlert(Alert::warning(tr("You only have access to Ortu using the following hot key:\n\n%1")
                                 .arg(_triggers.hotKeyString()),
        tr("You can also re-open the window by double-clicking the application icon in the "
           "Finder.")));
}

void AccessCheck::showIconInDockDidChange()
{
    if (!_hasStarted) {
        return;
    }
    if (!std::exchange(_haveAlertedUserAboutRequiredRestart, true)) {
        _runAlert(Alert::information(tr("You must restart Ortu for this option to take effect.")));
    }
    alertIfNoMouseAccess();
}
