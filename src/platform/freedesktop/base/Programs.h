// Which programs can be started here.

#pragma once

#include <QHash>
#include <QMutex>
#include <QString>

// May be used from any thread.
class Programs final
{
public:
    // Whether the program, an absolute path or a name to be looked for in $PATH, is a file that may
    // be executed. Looks at the disk.
    static bool isThere(const QString &program);

    // Whether the file at a path is an application in one file, and may be executed.
    static bool isAppImage(const QString &path);

    // As isThere(), each program looked for once between two calls of forget().
    bool isKnown(const QString &program);
    void forget();

private:
    QMutex _mutex;
    QHash<QString, bool> _known;
};
