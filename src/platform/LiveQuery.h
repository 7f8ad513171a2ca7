// Follows what comes, goes and changes in some folders, for as long as it runs.
//
// The base class sees no changes. Everything here is called and emitted on the main thread, but
// for Scope::kindOf.

#pragma once

#include <QList>
#include <QObject>
#include <QStringList>

#include <functional>

class LiveQuery : public QObject
{
    Q_OBJECT

public:
    enum class Kind { Result, Folder, Neither };

    // Where results are looked for, and what they are. Paths are absolute and in standard form; the
    // folders need not exist.
    struct Scope
    {
        // None of them lies in another one.
        QStringList folders;
        // Folders that lie in these and stand on their own: they are no part of the others, and
        // their levels are counted from them.
        QStringList nested;
        // How many levels of folders are looked at; 1 is the folders themselves.
        int levels = 1;
        // What is at a path. Called on any thread, until the query is stopped or destroyed.
        std::function<Kind(const QString &path)> kindOf;
    };

    // Paths of results, each in one list.
    struct Update
    {
        QStringList added;
        QStringList removed;
        QStringList changed;
        // More may have happened than the lists say.
        bool isIncomplete = false;

        bool isEmpty() const
        {
            return added.isEmpty() && removed.isEmpty() && changed.isEmpty() && !isIncomplete;
        }
    };

    using QObject::QObject;

    // Starts anew. The first update, which comes only when there is a difference, compares what is
    // found with the results that are known already: one list for each folder that has any.
    virtual void start(const Scope &, const QList<QStringList> &) { }
    // No update comes after this.
    virtual void stop() { }

Q_SIGNALS:
    // Once for all changes of a moment; very many come in several updates.
    void didUpdate(const LiveQuery::Update &update);
};
