#include "catalogue/files/ScanFolders.h"

#include "platform/SearchPaths.h"
#include "support/UserDefaults.h"
#include "support/files/StandardPath.h"

namespace {

QVariantList dictionaries(const QStringList &paths)
{
    QVariantList list;
    for (const QString &path : paths) {
        list.append(QVariantMap { { QStringLiteral("path"), path } });
    }
    return list;
}

void convertScanDirectories(UserDefaults &defaults)
{
    const QString key = QStringLiteral("scanDirectories");
    if (!defaults.hasStoredValue(key)) {
        return;
    }
    QStringList paths;
    const QVariantList stored = defaults.arrayForKey(key);
    for (const QVariant &path : stored) {
        if (path.typeId() == QMetaType::QString) {
            paths.append(path.toString());
        }
    }
    if (!paths.isEmpty()) {
        defaults.setObject(QStringLiteral("searchDirectories"), dictionaries(paths));
        defaults.removeObject(key);
    }
}

} // namespace

void ScanFolders::registerDefaults(UserDefaults &defaults, const SearchPaths &searchPaths)
{
    defaults.registerDefaults({ { QStringLiteral("searchDirectories"),
        dictionaries(searchPaths.applicationFolders()) } });
    convertScanDirectories(defaults);
}

QStringList ScanFolders::pathsToScan(const UserDefaults &defaults)
{
    QStringList paths;
    const QVariantList list = defaults.arrayForKey(QStringLiteral("searchDirectories"));
    for (const QVariant &item : list) {
        const QVariant path = item.toMap().value(QStringLiteral("path"));
        if (path.typeId() == QMetaType::QString && !path.toString().isEmpty()) {
            paths.append(standardizedPath(path.toString()));
        }
    }
    return paths;
}
