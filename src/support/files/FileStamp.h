// What tells one content of a file from another one without reading it, in a form that can be kept
// from one run to the next.
//
// Two files that were written one after the other may carry the same times when they follow each
// other quicker than the file system's clock ticks. A stamp is therefore kept only of a file that
// has settled.

#pragma once

#include <QDataStream>
#include <QString>

struct FileStamp
{
    // Nanoseconds since 1970. The second one is of the file's record in the file system: it changes
    // also when a program sets the first one back.
    qint64 modified = 0;
    qint64 recordChanged = 0;
    // In bytes; -1 when there is no such file.
    qint64 size = -1;
    // The file system's own. Its device is left out: it may have another number after each boot.
    quint64 number = 0;
    bool isRegular = false;

    bool operator==(const FileStamp &other) const = default;

    bool exists() const { return size >= 0; }
    // Whether the file was last changed two seconds before this moment or earlier, by the
    // coarsest clock of a file system.
    bool hasSettledBy(qint64 moment) const;

    // Of what is at a path, links followed.
    static FileStamp of(const QString &path);
    // In nanoseconds, by the clock of file systems.
    static qint64 now();
};

QDataStream &operator<<(QDataStream &stream, const FileStamp &stamp);
QDataStream &operator>>(QDataStream &stream, FileStamp &stamp);
