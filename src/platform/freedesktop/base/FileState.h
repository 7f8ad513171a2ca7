// Reading small files that any program may have put there, and knowing when they have changed.

#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

// What tells one content of a regular file from another one.
struct FileState
{
    qint64 modified = 0; // nanoseconds
    qint64 size = 0;
    quint64 device = 0;
    quint64 number = 0;

    bool operator==(const FileState &other) const = default;

    // Of the regular file at a path, links followed; empty when there is none.
    static std::optional<FileState> of(const QString &path);
};

// The content of a regular file. Empty, with the reason, when there is none or when it is larger
// than `maximumSize` bytes. Never blocks, as opening a named pipe would.
std::optional<QByteArray> readSmallFile(const QString &path, qint64 maximumSize, QString *problem);
