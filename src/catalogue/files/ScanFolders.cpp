#include "catalogue/files/ScanFolders.h"

#include "catalogue/files/OTNode.h"
#include "platform/SearchPaths.h"
#include "support/UserDefaults.h"
#include "support/files/StandardPath.h"

#include <climits>

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

// A flagged node ends the way down: what lies below is covered by it.
void recurseChild(const OTNode &node, const QString &basePath, QStringList &intoArray)
{
    for (const std::unique_ptr<OTNode> &child : node.children()) {
        const bool isJoined = basePath.isEmpty() || basePath.endsWith(QLatin1Char('/'));
        const QString path = basePath + QLatin1String(isJoined ? "" : "/") + child->name();
        if (child->isFlagged()) {
            intoArray.append(path);
        } else {
            recurseChild(*child, path, intoArray);
        }
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

QStringList ScanFolders::withoutNested(const QStringList &paths)
{
    OTNode root(QStringLiteral("root"));
    for (const QString &path : paths) {
        // Nothing can be opened by a longer path, and each component is a level of the tree.
        if (path.size() > PATH_MAX || !path.startsWith(QLatin1Char('/'))) {
            continue;
        }
        OTNode *node = root.addChildWithName(QStringLiteral("/"));
        const QStringList components = path.split(QLatin1Char('/'), Qt::SkipEmptyParts);
        for (const QString &component : components) {
            node = node->addChildWithName(component);
        }
        node->setIsFlagged(true);
    }
    QStringList outermost;
    recurseChild(root, {}, outermost);
    return outermost;
}
