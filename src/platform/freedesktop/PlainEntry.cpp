#include "platform/freedesktop/PlainEntry.h"

#include "platform/freedesktop/DesktopEntry.h"
#include "platform/freedesktop/FileState.h"

#include <QList>

namespace {

constexpr const char *group = G_KEY_FILE_DESKTOP_GROUP;

QByteArray groupOf(const QByteArray &action)
{
    return "Desktop Action " + action;
}

// GIO would list them too, by the name "Unnamed".
void dropActionsWithoutName(GKeyFile *file)
{
    gsize count = 0;
    char **const ids =
        g_key_file_get_string_list(file, group, G_KEY_FILE_DESKTOP_KEY_ACTIONS, &count, nullptr);
    QList<const char *> named;
    for (gsize i = 0; i < count; ++i) {
        if (g_key_file_has_key(
                file, groupOf(ids[i]).constData(), G_KEY_FILE_DESKTOP_KEY_NAME, nullptr)
            != FALSE) {
            named.append(ids[i]);
        }
    }
    g_key_file_set_string_list(
        file, group, G_KEY_FILE_DESKTOP_KEY_ACTIONS, named.constData(), gsize(named.size()));
    g_strfreev(ids);
}

// An action without a command line leaves the entry without one.
void putActionFirst(GKeyFile *file, const QByteArray &action)
{
    char *const commandLine = g_key_file_get_value(
        file, groupOf(action).constData(), G_KEY_FILE_DESKTOP_KEY_EXEC, nullptr);
    g_key_file_set_value(
        file, group, G_KEY_FILE_DESKTOP_KEY_EXEC, commandLine != nullptr ? commandLine : "");
    g_free(commandLine);
}

} // namespace

GioPointer<GDesktopAppInfo> plainEntry(const QString &path, const QByteArray &action)
{
    QString problem;
    QByteArray text =
        readSmallFile(path, DesktopEntry::maximumSize, &problem).value_or(QByteArray());
    if (text.startsWith("\xef\xbb\xbf")) {
        text.remove(0, 3);
    }
    GKeyFile *const file = g_key_file_new();
    GioPointer<GDesktopAppInfo> info;
    if (g_key_file_load_from_data(
            file, text.constData(), gsize(text.size()), G_KEY_FILE_NONE, nullptr)
        != FALSE) {
        g_key_file_set_boolean(file, group, G_KEY_FILE_DESKTOP_KEY_DBUS_ACTIVATABLE, FALSE);
        dropActionsWithoutName(file);
        if (!action.isEmpty()) {
            putActionFirst(file, action);
        }
        info.reset(g_desktop_app_info_new_from_keyfile(file));
    }
    g_key_file_unref(file);
    return info;
}
