#include "platform/freedesktop/entries/PlainEntry.h"

#include "platform/freedesktop/base/FileState.h"
#include "platform/freedesktop/entries/DesktopEntry.h"

#include <QList>

namespace {

constexpr const char *group = G_KEY_FILE_DESKTOP_GROUP;

QByteArray groupOf(const QByteArray &action)
{
    return "Desktop Action " + action;
}

// GIO would list them too: those without a name as "Unnamed", and those that nothing can perform.
void dropUselessActions(GKeyFile *file)
{
    const bool isOnTheBus =
        g_key_file_get_boolean(file, group, G_KEY_FILE_DESKTOP_KEY_DBUS_ACTIVATABLE, nullptr)
        != FALSE;
    const auto has = [file](const char *id, const char *key) {
        return g_key_file_has_key(file, groupOf(id).constData(), key, nullptr) != FALSE;
    };
    gsize count = 0;
    char **const ids =
        g_key_file_get_string_list(file, group, G_KEY_FILE_DESKTOP_KEY_ACTIONS, &count, nullptr);
    QList<const char *> named;
    for (gsize i = 0; i < count; ++i) {
        if (has(ids[i], G_KEY_FILE_DESKTOP_KEY_NAME)
            && (isOnTheBus || has(ids[i], G_KEY_FILE_DESKTOP_KEY_EXEC))) {
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
        dropUselessActions(file);
        g_key_file_set_boolean(file, group, G_KEY_FILE_DESKTOP_KEY_DBUS_ACTIVATABLE, FALSE);
        if (!action.isEmpty()) {
            putActionFirst(file, action);
        }
        info.reset(g_desktop_app_info_new_from_keyfile(file));
    }
    g_key_file_unref(file);
    return info;
}
