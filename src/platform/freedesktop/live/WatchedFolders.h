// The folders of a query, level by level: which results lie in them, and what the kernel tells of
// them.
//
// What has happened is collected first and looked at afterwards, once for each item however often
// it was touched. A folder that is not there is awaited at the nearest one above it. Lives on one
// thread.

#pragma once

#include "platform/freedesktop/base/FileState.h"
#include "platform/freedesktop/live/ChangeSet.h"
#include "platform/freedesktop/live/Inotify.h"

#include <QHash>
#include <QMultiHash>
#include <QSet>

class Items;

class WatchedFolders final
{
public:
    // Looking at folders ends early when `isStale` says so. The items outlive this.
    WatchedFolders(Items &items, const LiveQuery::Scope &scope, std::function<bool()> isStale,
        qsizetype mostWatches);

    int descriptor() const { return _inotify.descriptor(); }
    // Whether some folders have no watch because none was left, and have to be looked at again.
    bool isShortOfWatches() const { return _isShort; }
    // Empty folders, which have no results, are left out.
    QList<QStringList> results() const;

    // Takes what the kernel tells.
    void readEvents();
    // Something was mounted or unmounted: the same path may lead to another folder.
    void touchRemounted();
    void touchAll();
    bool isTouched() const;
    // Looks at everything that was touched.
    ChangeSet lookAtTouched();
    // Whether more may have been touched than the kernel told, since the last call.
    bool takeIsIncomplete() { return std::exchange(_isIncomplete, false); }

private:
    struct Folder
    {
        // The folder of the scope that it belongs to.
        QString root;
        int level = 1;
        // The folder is part of this one, which has the name of a bundle and is not complete yet;
        // empty otherwise.
        QString bundle = {};
        int watch = Inotify::NoWatch;
        quint64 device = 0;
        quint64 number = 0;
        QHash<QString, FileState> results = {};
        // By name.
        QSet<QString> folders = {};
        bool hasEntries = false;
    };
    // A folder above one of the scope's.
    struct Way
    {
        QString root;
        // What is missing in it, or a link that may be led elsewhere; empty for neither.
        QString name;
    };

    void take(const Inotify::Event &event);
    void touch(const QString &path, const Inotify::Event &event);
    void touchShadowed();
    void lookOnce();
    void lookAtRoot(const QString &root);
    void lookAtFolder(const QString &path);
    void lookAtName(const QString &folderPath, const QString &name);
    void keepResult(Folder &folder, const QString &name, const QString &path);
    void enter(const QString &path, const Folder &place);
    void enterBundle(const QString &path, const Folder &place);
    void leave(const QString &path);
    void watch(const QString &path, Folder &folder);
    void watchWayTo(const QString &root);
    void leaveWayTo(const QString &root);
    void release(int watch);

    Items &_items;
    const LiveQuery::Scope _scope;
    const std::function<bool()> _isStale;
    Inotify _inotify;
    const QStringList _roots;
    const QSet<QString> _rootSet;
    QHash<QString, Folder> _folders;
    QMultiHash<int, QString> _pathsByWatch;
    QMultiHash<int, Way> _waysByWatch;

    QSet<QString> _touchedRoots;
    QSet<QString> _touchedFolders;
    QHash<QString, QSet<QString>> _touchedNames;
    // Desktop entries that have come or gone; others of that name may count now, or no longer.
    QSet<QString> _movedEntries;
    // A whole folder of entries has come or gone.
    bool _areShadowsOther = false;
    bool _isGathered = false;
    ChangeSet _changes;
    bool _isIncomplete = false;
    bool _isShort = false;
};
