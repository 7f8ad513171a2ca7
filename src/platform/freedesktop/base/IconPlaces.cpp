#include "platform/freedesktop/base/IconPlaces.h"

#include <QDir>

// The folders a colon-separated variable names, or those of `standard` when it names none.
static QStringList foldersFrom(const char *variable, const QStringList &standard)
{
    QStringList folders;
    for (const QString &path : qEnvironmentVariable(variable).split(u':', Qt::SkipEmptyParts)) {
        if (QDir::isAbsolutePath(path)) {
            folders.append(QDir::cleanPath(path));
        }
    }
    folders.removeDuplicates();
    return folders.isEmpty() ? standard : folders;
}

static QString folderFrom(const char *variable, const QString &standard)
{
    const QString path = qEnvironmentVariable(variable);
    return QDir::isAbsolutePath(path) ? QDir::cleanPath(path) : standard;
}

IconPlaces IconPlaces::fromEnvironment()
{
    const QString home = QDir::homePath();
    const QString dataHome = folderFrom("XDG_DATA_HOME", home + QLatin1String("/.local/share"));
    const QStringList dataDirs = foldersFrom(
        "XDG_DATA_DIRS", { QStringLiteral("/usr/local/share"), QStringLiteral("/usr/share") });

    IconPlaces places;
    places.configHome = folderFrom("XDG_CONFIG_HOME", home + QLatin1String("/.config"));
    places.configDirs = foldersFrom("XDG_CONFIG_DIRS", { QStringLiteral("/etc/xdg") });
    places.baseFolders.append(home + QLatin1String("/.icons"));
    places.baseFolders.append(dataHome + QLatin1String("/icons"));
    for (const QString &folder : dataDirs) {
        places.baseFolders.append(folder + QLatin1String("/icons"));
        places.pixmapFolders.append(folder + QLatin1String("/pixmaps"));
    }
    places.pixmapFolders.append(QStringLiteral("/usr/share/pixmaps"));
    places.baseFolders.removeDuplicates();
    places.pixmapFolders.removeDuplicates();
    places.desktops =
        qEnvironmentVariable("XDG_CURRENT_DESKTOP").toLower().split(u':', Qt::SkipEmptyParts);
    return places;
}
