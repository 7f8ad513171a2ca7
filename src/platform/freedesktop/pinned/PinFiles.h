// Reading the files of docks and panels, which may hold anything.

#pragma once

#include <QByteArray>
#include <QString>

#include <string_view>

namespace PinFiles {

// Pins in one list, and files for one list. Beyond that it is no list of a user's.
inline constexpr qsizetype maximumCount = 1000;
// In bytes, of a file with a whole list and of one with a single pin.
inline constexpr qint64 maximumSize = 4LL * 1024 * 1024;
inline constexpr qint64 maximumItemSize = 256LL * 1024;

// The content of the file that a list is in. Empty when there is none, and, with a log line, when
// it cannot be read.
QByteArray read(const QString &path);

// One text value of a key file with a single pin, which may be absent or damaged.
QString itemValue(const QString &path, std::string_view group, std::string_view key);

// The one log line for a list that is not used.
void sayUnusable(const QString &path, const QString &reason);

} // namespace PinFiles
