#include "platform/freedesktop/pinned/PinLists.h"
#include "platform/freedesktop/pinned/StoredSettings.h"

QStringList PinLists::gnomeShell(bool isRunning)
{
    const std::optional<QStringList> chosen =
        StoredSettings::chosenList(QStringLiteral("/org/gnome/shell/favorite-apps"));
    if (chosen || !isRunning) {
        return chosen.value_or(QStringList());
    }
    return StoredSettings::standardList("org.gnome.shell", "favorite-apps");
}
