// The names that a folder asks not to be shown: those listed in its `.hidden` file, one a line.

#pragma once

#include <QHash>
#include <QMutex>
#include <QSet>
#include <QString>

// May be used from any thread.
class HiddenNames final
{
public:
    // Each folder's list is read once between two calls of forget(). A list that cannot be read
    // hides nothing; one log line unless it simply is not there.
    bool contains(const QString &folder, const QString &name);
    void forget();

private:
    QMutex _mutex;
    QHash<QString, QSet<QString>> _names;
};
