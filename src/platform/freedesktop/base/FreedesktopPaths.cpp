#include "platform/freedesktop/base/FreedesktopPaths.h"

#include "support/StandardPath.h"

#include <QDir>
#include <QFile>

namespace {

// The absolute folders that a variable lists, in standard form.
QStringList foldersIn(const char *variable)
{
    QStringList folders;
    const QString value = QFile::decodeName(qgetenv(variable));
    const QStringList parts = value.split(QLatin1Char(':'), Qt::SkipEmptyParts);
    for (const QString &part : parts) {
        const QString folder = standardizedPath(part);
        if (QDir::isAbsolutePath(folder)) {
            folders.append(folder);
        }
    }
    return folders;
}

// The one folder that a variable names; a colon has no meaning there.
QString folderIn(const char *variable, const QString &usual)
{
    const QString folder = standardizedPath(QFile::decodeName(qgetenv(variable)));
    return QDir::isAbsolutePath(folder) ? folder : standardizedPath(usual);
}

QString withTilde(const QString &path)
{
    const QString home = QDir::homePath();
    const bool isBelowHome = path == home || path.startsWith(home + QLatin1Char('/'));
    return isBelowHome ? QLatin1Char('~') + path.mid(home.size()) : path;
}

} // namespace

FreedesktopPaths::FreedesktopPaths()
    : _stateHome(folderIn("XDG_STATE_HOME", QStringLiteral("~/.local/state")))
    , _configurationHome(folderIn("XDG_CONFIG_HOME", QStringLiteral("~/.config")))
{
    _dataFolders.append(folderIn("XDG_DATA_HOME", QStringLiteral("~/.local/share")));
    const QStringList shared = foldersIn("XDG_DATA_DIRS");
    _dataFolders.append(shared.isEmpty()
            ? QStringList { QStringLiteral("/usr/local/share"), QStringLiteral("/usr/share") }
            : shared);
    _dataFolders.removeDuplicates();
}

QString FreedesktopPaths::applicationSupportFolder(Domain domain) const
{
    return domain == Domain::User ? _dataFolders.constFirst() : QStringLiteral("/usr/local/share");
}

QString FreedesktopPaths::libraryFolder(Domain domain) const
{
    return domain == Domain::User ? _stateHome + QStringLiteral("/Ortu")
                                  : QStringLiteral("/var/lib/Ortu");
}

QString FreedesktopPaths::configurationFolder() const
{
    return _configurationHome + QStringLiteral("/Ortu");
}

QStringList FreedesktopPaths::applicationFolders() const
{
    QStringList folders;
    for (const QString &dataFolder : _dataFolders) {
        folders.append(withTilde(dataFolder + QStringLiteral("/applications")));
    }
    folders.insert(1, QStringLiteral("~/Applications"));
    folders.removeDuplicates();
    return folders;
}
