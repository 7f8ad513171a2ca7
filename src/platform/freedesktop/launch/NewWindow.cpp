#include "platform/freedesktop/launch/NewWindow.h"

#include "platform/freedesktop/entries/PlainEntry.h"

namespace {

// The second is what GNOME had before the first was agreed upon.
bool hasOneWindowOnly(GDesktopAppInfo *info)
{
    return g_desktop_app_info_get_boolean(info, "SingleMainWindow") != FALSE
        || g_desktop_app_info_get_boolean(info, "X-GNOME-SingleWindow") != FALSE;
}

} // namespace

NewWindow NewWindow::ofEntry(const QString &path)
{
    const GioPointer<GDesktopAppInfo> info = plainEntry(path);
    if (!info || hasOneWindowOnly(info.get())) {
        return {};
    }
    for (const char *const *id = g_desktop_app_info_list_actions(info.get()); *id != nullptr;
         ++id) {
        if (isAction(*id)) {
            return { By::Action, *id };
        }
    }
    const char *const commandLine = g_app_info_get_commandline(G_APP_INFO(info.get()));
    const bool canStart = commandLine != nullptr && *commandLine != '\0';
    return { canStart ? By::Start : By::Nothing };
}

bool NewWindow::isAction(const QByteArray &id)
{
    QByteArray word = id.toLower();
    word.replace('-', "").replace('_', "");
    return word == "newwindow";
}
