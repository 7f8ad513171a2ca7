#include "platform/freedesktop/launch/FreedesktopActions.h"

#include "platform/freedesktop/base/GioPointer.h"
#include "platform/freedesktop/base/Log.h"
#include "platform/freedesktop/entries/PlainEntry.h"
#include "platform/freedesktop/launch/EntryLaunch.h"
#include "platform/freedesktop/launch/NewWindow.h"

#include <algorithm>
#include <gio/gdesktopappinfo.h>

namespace {

// More than any menu can show, whatever a file says.
constexpr qsizetype mostActions = 50;
constexpr qsizetype longestTitle = 200;

const char *reasonOf(LaunchStatus status)
{
    return status == LaunchStatus::CannotExecute ? "its program is not there"
                                                 : "the desktop refused";
}

} // namespace

QList<ApplicationActions::Action> FreedesktopActions::actionsOf(const QString &bundlePath) const
{
    if (!bundlePath.endsWith(QLatin1String(".desktop"))) {
        return {};
    }
    const GioPointer<GDesktopAppInfo> info = plainEntry(bundlePath);
    if (!info) {
        return {};
    }
    QList<Action> actions;
    for (const char *const *id = g_desktop_app_info_list_actions(info.get());
         *id != nullptr && actions.size() < mostActions; ++id) {
        char *const name = g_desktop_app_info_get_action_name(info.get(), *id);
        actions.append({ QString::fromUtf8(*id),
            QString::fromUtf8(name).simplified().left(longestTitle), NewWindow::isAction(*id) });
        g_free(name);
    }
    return actions;
}

bool FreedesktopActions::perform(const QString &bundlePath, const QString &actionId)
{
    const QList<Action> actions = actionsOf(bundlePath);
    const bool isListed = std::any_of(actions.begin(), actions.end(),
        [&actionId](const Action &action) { return action.id == actionId; });
    const char *reason = "there is no such action";
    if (isListed) {
        const LaunchStatus status = launchEntryAction(bundlePath, actionId);
        if (status == LaunchStatus::Launched) {
            return true;
        }
        reason = reasonOf(status);
    }
    qCWarning(lcPlatform, "cannot perform %s of %s: %s", qUtf8Printable(actionId),
        qUtf8Printable(bundlePath), reason);
    return false;
}
