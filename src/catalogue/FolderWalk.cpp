#include "catalogue/FolderWalk.h"

#include "catalogue/Log.h"
#include "platform/Items.h"

#include <QDirIterator>
#include <QFileInfo>

#include <algorithm>

namespace {

enum class ItemKind { Application, Folder, Other };

ItemKind classified(const ItemFlags &flags, const QString &name)
{
    const bool isPlainFolder = flags.isContainer && !flags.isApplication;
    if (flags.isInvisible || (flags.isAlias && !isPlainFolder)) {
        return ItemKind::Other;
    }
    if (flags.isApplication) {
        return flags.isClassicApp ? ItemKind::Other : ItemKind::Application;
    }
    if (flags.isContainer && !flags.isPackage && !name.endsWith(QLatin1String(".framework"))) {
        return ItemKind::Folder;
    }
    return ItemKind::Other;
}

} // namespace

FolderWalk::FolderWalk(const Items &items, const QStringList &roots, qint64 maxRecursionDepth)
    : _items(items)
    , _roots(roots)
    , _maxRecursionDepth(int(std::clamp<qint64>(maxRecursionDepth, 1, 99)))
{ }

bool FolderWalk::isListable(const QString &root)
{
    const QFileInfo info(root);
    if (!info.exists()) {
        // A link that leads nowhere or round in a circle is somebody's mistake, an absent folder is
        // not.
        if (info.isSymLink()) {
            qCWarning(lcCatalogue, "cannot scan %s: the link leads nowhere", qUtf8Printable(root));
        }
        return false;
    }
    if (!info.isDir()) {
        qCWarning(lcCatalogue, "cannot scan %s: not a folder", qUtf8Printable(root));
        return false;
    }
    if (!info.isReadable() || !info.isExecutable()) {
        qCWarning(lcCatalogue, "cannot scan %s: no permission", qUtf8Printable(root));
        return false;
    }
    return true;
}

QStringList FolderWalk::pathsUnder(const QString &root)
{
    QStringList paths;
    if (isListable(root)) {
        scanAppsUnderPath(root, paths);
    }
    return paths;
}

void FolderWalk::scanAppsUnderPath(const QString &path, QStringList &intoArray)
{
    ++_depth;
    // System shows links that lead nowhere, so that what becomes of them is decided in one place.
    QDirIterator entries(
        path, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    const QString prefix = path.endsWith(QLatin1Char('/')) ? path : path + QLatin1Char('/');
    while (entries.hasNext()) {
        entries.next();
        const QString name = entries.fileName();
        const QString itemPath = prefix + name;
        const ItemKind kind = classified(_items.flagsOf(itemPath), name);
        if (kind == ItemKind::Application) {
            intoArray.append(itemPath);
        } else if (kind == ItemKind::Folder && _depth < _maxRecursionDepth
            && !_roots.contains(itemPath)) {
            scanAppsUnderPath(itemPath, intoArray);
        }
    }
    --_depth;
}
