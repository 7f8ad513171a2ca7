#include "catalogue/files/FolderWalk.h"

#include "catalogue/files/Log.h"
#include "platform/Items.h"
#include "support/files/PropertyList.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <filesystem>
#include <string>
#include <system_error>

namespace {

// A folder full of such names must not fill the log.
constexpr int MaxRefusalLines = 20;

} // namespace

FolderWalk::ItemKind FolderWalk::classified(const ItemFlags &flags, const QString &name)
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

FolderWalk::FolderWalk(const Items &items, const QStringList &roots, qint64 maxRecursionDepth)
    : _items(items)
    , _roots(roots)
    , _maxRecursionDepth(int(std::clamp<qint64>(maxRecursionDepth, 1, 99)))
{ }

bool FolderWalk::isListable(const QString &root)
{
    const QFileInfo info(root);
    if (!info.exists()) {
        // A link that leads nowhere or round in a circle is a mistake, an absent folder is
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
    // Qt's own iterator passes over names that are not UTF-8.
    std::error_code error;
    std::filesystem::directory_iterator entries(QFile::encodeName(path).toStdString(), error);
    const QString prefix = path.endsWith(QLatin1Char('/')) ? path : path + QLatin1Char('/');
    for (; !error && entries != std::filesystem::directory_iterator(); entries.increment(error)) {
        const std::string nameOnDisk = entries->path().filename().string();
        const QString name = QFile::decodeName(nameOnDisk.c_str());
        const QString itemPath = prefix + name;
        if (QFile::encodeName(name) != nameOnDisk.c_str()) {
            refuse(itemPath, QStringLiteral("its name is not valid UTF-8"));
            continue;
        }
        const ItemKind kind = classified(_items.flagsOf(itemPath), name);
        const bool isEntered =
            kind == ItemKind::Folder && _depth < _maxRecursionDepth && !_roots.contains(itemPath);
        if (kind != ItemKind::Application && !isEntered) {
            continue;
        }
        if (!PropertyList::canHold(itemPath)) {
            refuse(itemPath, QStringLiteral("no property list can hold its name"));
        } else if (isEntered) {
            scanAppsUnderPath(itemPath, intoArray);
        } else {
            intoArray.append(itemPath);
        }
    }
    --_depth;
}

void FolderWalk::refuse(const QString &path, const QString &reason)
{
    ++_refusedCount;
    if (_refusedCount <= MaxRefusalLines) {
        qCWarning(lcCatalogue, "cannot list %s: %s", qUtf8Printable(path), qUtf8Printable(reason));
    } else if (_refusedCount == MaxRefusalLines + 1) {
        qCWarning(lcCatalogue, "cannot list %s and perhaps more: %s", qUtf8Printable(path),
            qUtf8Printable(reason));
    }
}
