#include "platform/freedesktop/base/FolderReader.h"
#include "platform/freedesktop/pinned/PinFiles.h"
#include "platform/freedesktop/pinned/PinLists.h"
#include "platform/freedesktop/pinned/StoredSettings.h"

#include <QFile>
#include <QSet>

#include <algorithm>

namespace {

QStringList namesIn(const QString &folder, const QString &ending)
{
    QStringList names;
    FolderReader reader(QFile::encodeName(folder));
    while (const dirent *const item = reader.next()) {
        const QString name = QFile::decodeName(item->d_name);
        if (name.endsWith(ending) && !name.startsWith(u'.')
            && names.size() <= PinFiles::maximumCount) {
            names.append(name);
        }
    }
    names.sort();
    return names;
}

QStringList docksIn(const QString &home)
{
    QStringList docks = namesIn(home, {});
    if (const auto shown =
            StoredSettings::chosenList(QStringLiteral("/net/launchpad/plank/enabled-docks"))) {
        docks.removeIf([&shown](const QString &dock) { return !shown->contains(dock); });
    }
    return docks;
}

// The items of a dock in its order, which is a setting; any that it leaves out come behind.
QStringList itemsOf(const QString &dock, const QString &folder)
{
    const QStringList names = namesIn(folder, QStringLiteral(".dockitem"));
    const QSet<QString> there(names.begin(), names.end());
    const QString setting =
        QStringLiteral("/net/launchpad/plank/docks/") + dock + QStringLiteral("/dock-items");
    QStringList items = StoredSettings::chosenList(setting).value_or(QStringList());
    items.removeIf([&there](const QString &name) { return !there.contains(name); });
    items.append(names);
    items.removeDuplicates();
    return items;
}

} // namespace

QStringList PinLists::plank(const QString &configurationHome)
{
    QStringList pins;
    const QString home = configurationHome + QStringLiteral("/plank/");
    for (const QString &dock : docksIn(home)) {
        const QString folder = home + dock + QStringLiteral("/launchers");
        for (const QString &item : itemsOf(dock, folder)) {
            if (pins.size() <= PinFiles::maximumCount) {
                pins.append(PinFiles::itemValue(
                    folder + u'/' + item, "PlankDockItemPreferences", "Launcher"));
            }
        }
    }
    return pins;
}
