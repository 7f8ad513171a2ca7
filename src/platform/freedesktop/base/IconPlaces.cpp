#include "platform/freedesktop/base/IconPlaces.h"

#include "platform/freedesktop/base/SessionFolders.h"

#include <QDir>

IconPlaces IconPlaces::fromEnvironment()
{
    const QString home = QDir::homePath();
    IconPlaces places;
    places.configHome = SessionFolders::configurationHome();
    places.configDirs = SessionFolders::sharedConfiguration();
    places.baseFolders.append(home + QLatin1String("/.icons"));
    places.baseFolders.append(SessionFolders::dataHome() + QLatin1String("/icons"));
    for (const QString &folder : SessionFolders::sharedData()) {
        places.baseFolders.append(folder + QLatin1String("/icons"));
        places.pixmapFolders.append(folder + QLatin1String("/pixmaps"));
    }
    places.pixmapFolders.append(QStringLiteral("/usr/share/pixmaps"));
    places.baseFolders.removeDuplicates();
    places.pixmapFolders.removeDuplicates();
    for (const QString &desktop : SessionFolders::currentDesktops()) {
        places.desktops.append(desktop.toLower());
    }
    return places;
}
