#include "platform/freedesktop/pinned/FreedesktopPins.h"

#include "platform/freedesktop/base/SessionFolders.h"
#include "platform/freedesktop/pinned/PinFiles.h"
#include "platform/freedesktop/pinned/PinLists.h"
#include "platform/freedesktop/pinned/PinResolver.h"

FreedesktopPins::FreedesktopPins(
    QStringList dataFolders, QStringList currentDesktops, QString preferencesFolder)
    : _dataFolders(std::move(dataFolders))
    , _currentDesktops(std::move(currentDesktops))
    , _preferencesFolder(std::move(preferencesFolder))
    , _configurationHome(SessionFolders::configurationHome())
{ }

QStringList FreedesktopPins::paths() const
{
    const QStringList names = pins();
    if (names.isEmpty()) {
        return {};
    }
    PinResolver resolver(_dataFolders, _configurationHome);
    QStringList paths;
    for (const QString &name : names) {
        paths.append(resolver.pathOf(name));
    }
    paths.removeAll(QString());
    paths.removeDuplicates();
    return paths;
}

QStringList FreedesktopPins::pins() const
{
    const auto isRunning = [this](const char *desktop) {
        return _currentDesktops.contains(QLatin1String(desktop), Qt::CaseInsensitive);
    };
    const bool isGnome = isRunning("GNOME");
    const bool isPlasma = isRunning("KDE");
    const bool isXfce = isRunning("XFCE");
    const bool isOther = !isGnome && !isPlasma && !isXfce;
    QStringList names;
    const auto add = [&names](const char *whose, const QStringList &list) {
        if (list.size() > PinFiles::maximumCount) {
            PinFiles::sayUnusable(QLatin1String(whose),
                QStringLiteral("more than %1 applications").arg(PinFiles::maximumCount));
        } else {
            names.append(list);
        }
    };
    if (isGnome || isOther) {
        add("the favourites of GNOME Shell", PinLists::gnomeShell(isGnome));
    }
    if (isPlasma || isOther) {
        add("the launchers of Plasma",
            PinLists::plasma(_configurationHome, isPlasma ? _dataFolders : QStringList()));
    }
    if (isXfce || isOther) {
        add("the launchers of Xfce", PinLists::xfce(_configurationHome));
    }
    add("the launchers of Plank", PinLists::plank(_configurationHome));
    add("the Dock's property list", PinLists::dockFile(_preferencesFolder));
    names.removeAll(QString());
    names.removeDuplicates();
    return names;
}
