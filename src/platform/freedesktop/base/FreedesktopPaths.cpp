#include "platform/freedesktop/base/FreedesktopPaths.h"

#include "platform/freedesktop/base/SessionFolders.h"

#include <QDir>

namespace {

QString withTilde(const QString &path)
{
    const QString home = QDir::homePath();
    const bool isBelowHome = path == home || path.startsWith(home + QLatin1Char('/'));
    return isBelowHome ? QLatin1Char('~') + path.mid(home.size()) : path;
}

} // namespace

FreedesktopPaths::FreedesktopPaths()
    : _dataFolders(SessionFolders::dataHome())
    , _stateHome(SessionFolders::stateHome())
    , _configurationHome(SessionFolders::configurationHome())
{
    _dataFolders.append(SessionFolders::sharedData());
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
