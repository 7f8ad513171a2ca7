// The logs of crashes and hangs that were left in the Library folders.
//
// What lies there may come from anywhere: only regular files count as logs, folders are not entered
// through links, and no file is read in whole. Main thread only.

#pragma once

#include <QDateTime>
#include <QStringList>

class CrashLogs final
{
public:
    // The Library folders, the user's first; the name is that by which logs begin.
    CrashLogs(QStringList libraryFolders, QString applicationName);

    // The paths of the logs that are newer than the date. Of each Library folder first those of
    // crashes, at any depth below "Logs/CrashReporter" and named NAME_….crash, then those of hangs
    // below "Logs/HangReporter/NAME", named ….hang; each of the two ordered by path.
    QStringList crashLogsSince(const QDateTime &date) const;

    // The text of the newest of these logs, of two equally old ones the later in the list. A log
    // of more than 1 MiB is cut off and says so. Null when it cannot be read, is not UTF-8, or
    // when there are no paths.
    static QString latestCrashLogContents(const QStringList &paths);

    // Also true without a date, without a file, and for a file of that very date.
    static bool fileIsNewerThan(const QString &path, const QDateTime &date);
    // Links are followed. Null when there is no file.
    static QDateTime modificationTimeOfFile(const QString &path);

private:
    // The paths below the folder, in order.
    static QStringList logsIn(const QString &folder, const QString &prefix,
        const QString &extension, const QDateTime &date);

    QStringList _libraryFolders;
    QString _applicationName;
};
