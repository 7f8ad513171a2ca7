// The walk over the folders to scan: which bundles lie in them.
//
// Refused, with a log line each for the first of them, are items whose path cannot be kept: a name
// that is not valid UTF-8, or characters that a property list cannot hold. A bundle is never
// entered. A root that lies inside another root is walked on its own only. The walk goes down to a
// limit: 1 is the root itself. Nothing is remembered between walks.

#pragma once

#include <QString>
#include <QStringList>

class Items;
struct ItemFlags;

class FolderWalk
{
public:
    // What the walk takes an item for: one to list, one to enter, or neither.
    enum class ItemKind { Application, Folder, Other };

    // By what the desktop says of the item and by the item's name, its last path component.
    static ItemKind classified(const ItemFlags &flags, const QString &name);

    // Roots in standard form. The limit is taken as it is, except that it is at least 1 and at
    // most 99.
    FolderWalk(const Items &items, const QStringList &roots, qint64 maxRecursionDepth);

    int maxRecursionDepth() const { return _maxRecursionDepth; }

    // The paths of the bundles below a root, in the order the file system gives them. A root that
    // cannot be listed gives none, and one log line unless it simply is not there.
    QStringList pathsUnder(const QString &root);

private:
    void scanAppsUnderPath(const QString &path, QStringList &intoArray);
    void refuse(const QString &path, const QString &reason);
    static bool isListable(const QString &root);

    const Items &_items;
    QStringList _roots;
    int _maxRecursionDepth = 1;
    int _depth = 0;
    int _refusedCount = 0;
};
