// A lock that programs of one user share: one for each folder, held while its files are changed.
//
// It lies on a file `.lock` in the folder, which stays there and whose content does not matter. The
// system frees the lock when the program that holds it ends, however it ends. Two locks of one
// program exclude each other as well.

#pragma once

#include <QString>

#include <chrono>

class FileLock final
{
public:
    // The folder must exist before the lock is asked for.
    explicit FileLock(const QString &folder);
    // Frees the lock.
    ~FileLock();
    Q_DISABLE_COPY_MOVE(FileLock)

    // Waits for another holder, at most this long. False when it still holds the lock, or when
    // there is nothing to put a lock on; error() then has the reason.
    bool lock(std::chrono::milliseconds longestWait = std::chrono::seconds(1));

    const QString &error() const { return _error; }

private:
    QString _path;
    QString _error;
    int _file = -1;
};
