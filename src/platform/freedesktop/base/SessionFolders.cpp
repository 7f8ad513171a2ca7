#include "platform/freedesktop/base/SessionFolders.h"

#include "support/files/StandardPath.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {

// A colon has no meaning there.
QString folderIn(const char *variable, const QString &usual)
{
    const QString folder = standardizedPath(QFile::decodeName(qgetenv(variable)));
    return QDir::isAbsolutePath(folder) ? folder : standardizedPath(usual);
}

QStringList foldersIn(const char *variable, const QStringList &usual)
{
    QStringList folders;
    const QString value = QFile::decodeName(qgetenv(variable));
    for (const QString &part : value.split(u':', Qt::SkipEmptyParts)) {
        const QString folder = standardizedPath(part);
        if (QDir::isAbsolutePath(folder)) {
            folders.append(folder);
        }
    }
    folders.removeDuplicates();
    return folders.isEmpty() ? usual : folders;
}

QStringList exportFolders()
{
    QStringList folders {
        folderIn("FLATPAK_USER_DIR", SessionFolders::dataHome() + QStringLiteral("/flatpak"))
            + QStringLiteral("/exports/share"),
        folderIn("FLATPAK_SYSTEM_DIR", QStringLiteral("/var/lib/flatpak"))
            + QStringLiteral("/exports/share"),
        QStringLiteral("/var/lib/snapd/desktop"),
    };
    folders.removeIf([](const QString &folder) { return !QFileInfo(folder).isDir(); });
    return folders;
}

} // namespace

QString SessionFolders::dataHome()
{
    return folderIn("XDG_DATA_HOME", QStringLiteral("~/.local/share"));
}

QString SessionFolders::configurationHome()
{
    return folderIn("XDG_CONFIG_HOME", QStringLiteral("~/.config"));
}

QString SessionFolders::stateHome()
{
    return folderIn("XDG_STATE_HOME", QStringLiteral("~/.local/state"));
}

QString SessionFolders::cacheHome()
{
    return folderIn("XDG_CACHE_HOME", QStringLiteral("~/.cache"));
}

QStringList SessionFolders::sharedData()
{
    QStringList folders = foldersIn(
        "XDG_DATA_DIRS", { QStringLiteral("/usr/local/share"), QStringLiteral("/usr/share") });
    folders.append(exportFolders());
    folders.removeDuplicates();
    return folders;
}

QStringList SessionFolders::sharedConfiguration()
{
    return foldersIn("XDG_CONFIG_DIRS", { QStringLiteral("/etc/xdg") });
}

QStringList SessionFolders::currentDesktops()
{
    return qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(u':', Qt::SkipEmptyParts);
}
