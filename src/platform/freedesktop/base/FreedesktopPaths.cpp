#include "platform/freedesktop/base/FreedesktopPaths.h"

#include "platform/freedesktop/base/SessionFolders.h"
#include "support/files/StandardPath.h"

FreedesktopPaths::FreedesktopPaths()
    : _dataFolders(SessionFolders::dataHome())
    , _userLibrary(userLibraryFolder())
    , _configurationHome(SessionFolders::configurationHome())
    , _cacheHome(SessionFolders::cacheHome())
{
    _dataFolders.append(SessionFolders::sharedData());
    _dataFolders.removeDuplicates();
}

QString FreedesktopPaths::userLibraryFolder()
{
    return SessionFolders::stateHome() + QStringLiteral("/Ortu");
}

QString FreedesktopPaths::applicationSupportFolder(Domain domain) const
{
    return domain == Domain::User ? _dataFolders.constFirst() : QStringLiteral("/usr/local/share");
}

QString FreedesktopPaths::libraryFolder(Domain domain) const
{
    return domain == Domain::User ? _userLibrary : QStringLiteral("/var/lib/Ortu");
}

QString FreedesktopPaths::configurationFolder() const
{
    return _configurationHome + QStringLiteral("/Ortu");
}

QString FreedesktopPaths::cacheFolder() const
{
    return _cacheHome + QStringLiteral("/Ortu");
}

QStringList FreedesktopPaths::applicationFolders() const
{
    QStringList folders;
    for (const QString &dataFolder : _dataFolders) {
        folders.append(abbreviatedPath(dataFolder + QStringLiteral("/applications")));
    }
    folders.insert(1, QStringLiteral("~/Applications"));
    folders.removeDuplicates();
    return folders;
}
