// Which desktop entries are shadowed: users change or hide an entry of the system by one of the
// same ID in a folder of their own, and the system's administrator does the same to the
// distribution.
//
// An entry's ID is its path below the `applications` folder with `-` for each `/`. Folders are
// listed when a question first needs them, and listed afresh after forget(). May be used from any
// thread.

#pragma once

#include <QHash>
#include <QMutex>
#include <QString>
#include <QStringList>

#include <optional>

class DesktopFileIds final
{
public:
    // The data folders, the one that counts most first.
    explicit DesktopFileIds(const QStringList &dataFolders);

    void forget();

    // Whether an earlier folder holds an entry of the same ID, whatever that entry says. False for
    // a path below no data folder.
    bool isShadowed(const QString &path);

    // The entry that counts among those of the ID that an entry at this path has, or had before it
    // was deleted. The path itself when there is no such entry, or when it lies below no data
    // folder.
    QString pathThatCounts(const QString &path);

    // Every ID, `.desktop` included, with the path of the entry that counts.
    QHash<QString, QString> pathsById();

private:
    struct Folder
    {
        QString path;
        std::optional<QHash<QString, QString>> pathsById;
    };
    // Where the entries in one folder stand.
    struct Standing
    {
        qsizetype dataFolder = 0;
        QString idPrefix;
        bool isBelowDataFolder = false;

        QString idOf(const QString &path) const;
    };

    Standing standingOf(const QString &folder) const;
    // As above; the mutex is locked.
    const Standing &knownStandingOf(const QString &path);
    const QHash<QString, QString> &entriesIn(Folder &folder);

    QMutex _mutex;
    QList<Folder> _folders;
    QHash<QString, Standing> _standings;
};
