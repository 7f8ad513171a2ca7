// What a file-system item is, and what people call it.
//
// The base class knows no applications: it sees plain folders and nothing else. Every operation may
// be called from any thread.

#pragma once

#include <QString>
#include <QStringList>

#include <optional>

// What a desktop says of one item. Several may hold at once; the folder walk decides by them in its
// own order.
struct ItemFlags
{
    bool isInvisible = false;
    // Points to another item. An alias to an application counts as the application and is not
    // marked.
    bool isAlias = false;
    bool isApplication = false;
    // An application that cannot run on this system.
    bool isClassicApp = false;
    bool isContainer = false;
    // A folder that is shown as one thing.
    bool isPackage = false;
};

// What else an application can be found by, besides the name that people see. Texts are empty where
// the application does not say.
struct ItemWords
{
    QString untranslatedName;
    // In the user's language where there is a translation.
    QString genericName;
    QString untranslatedGenericName;
    QStringList keywords;
    QStringList untranslatedKeywords;
    // The file names of the programs that it starts and needs.
    QStringList commands;
    // It may have actions.
    bool hasActions = false;
};

class Items
{
public:
    virtual ~Items() = default;

    // A walk over many folders begins: what was remembered of the desktop's folders is looked at
    // afresh.
    virtual void willScan() { }

    // What was remembered of the items at these paths, and of what they have a say in, is looked at
    // afresh: they have come, gone or changed.
    virtual void lookAgainAt(const QStringList &) { }

    // The flags of the item at an absolute path, none when there is no such item. A final symbolic
    // link is not followed, except to tell an alias of an application. A broken application file
    // gives no flags and one log line.
    virtual ItemFlags flagsOf(const QString &path) const;

    // What people see and type for the bundle at a path; by default its last component without
    // extension.
    virtual QString displayName(const QString &path) const;

    // What kind of application the bundle at a path says it is, in the user's language, such as
    // "Text Editor"; empty when it does not say. No value for a bundle that people know by its
    // path.
    virtual std::optional<QString> genericNameOf(const QString &path) const;

    // By what else the bundle at a path can be found. Reads a small file each time.
    virtual ItemWords wordsOf(const QString &path) const;

    // What stands in for the application at a path, which may be gone: where users change an
    // application by a copy in another place, the copy masks the original until it is deleted. The
    // path itself where nothing else stands in. Remembered between scans.
    virtual QString standInFor(const QString &path) const { return path; }

    // Why what is at a path is no application although only applications have such names; empty for
    // any other name, and for an application. Silent.
    virtual QString refusal(const QString &path) const;

    // The last path component without its extension: only the last dot counts, and a name that
    // begins with its only dot keeps it. That of the root is "/".
    static QString nameOf(const QString &path);

    // The file system's number of what is at a path, links followed: another one after the item has
    // been replaced, the same after it has been touched. Empty, with the reason, when it cannot be
    // told.
    static std::optional<quint64> fileNumberOf(const QString &path, QString *error);
};
