// Property lists: arrays, dictionaries, strings, numbers, booleans, dates and data in a file.
//
// A value is a QVariant that holds QVariantList, QVariantMap, QString, qlonglong, double, bool,
// QDateTime (UTC) or QByteArray. Both the XML and the binary form are read, the XML form is
// written. A file may come from anywhere: size and nesting are limited, and what is not exactly a
// property list is refused as a whole.

#pragma once

#include "support/files/FileReplacement.h"

#include <QByteArray>
#include <QString>
#include <QVariant>

#include <optional>

namespace PropertyList {

using FileReplacement::Former;

// How many arrays and dictionaries may lie in one another.
inline constexpr int maximumDepth = 64;
// In bytes, of the data or the file.
inline constexpr qint64 maximumSize = 64LL * 1024 * 1024;

// What reading a file came to. Absent: there is no such file. Damaged: there is one, but it cannot
// be read as a property list (or not at all); `error` says why.
enum class State { Read, Absent, Damaged };

struct Document
{
    State state = State::Absent;
    QVariant value;
    QString error;
};

// Empty when the data are no property list, nested too deep or too large; `error`, when given, then
// receives the reason.
std::optional<QVariant> fromData(const QByteArray &data, QString *error = nullptr);

// Whether a string can stand in a property list: one with most control characters cannot.
bool canHold(const QString &text);

// The value as it reads after it was written: any integer as qlonglong, a float as double, a string
// list as a list, a date in UTC with whole seconds. What a property list cannot hold (a control
// character, another type, what is nested too deep) is left out of its container; invalid when
// nothing is left.
QVariant plain(const QVariant &value);

// The XML form of plain(value); empty when that is invalid.
QByteArray toXml(const QVariant &value);

// Reads a file of at most `largest` bytes; logs nothing, since the caller knows what the file was
// for.
Document readFile(const QString &path, qint64 largest = maximumSize);

// Replaces the file in one step, so that a reader sees the old or the new one; its folder must
// exist. False and one log line when it cannot be written; the old file is then as it was, and
// `error`, when given, receives the reason.
bool writeFile(const QString &path, const QVariant &value, Former former = Former::Dropped,
    QString *error = nullptr);

// Moves a damaged file out of the way as PATH.damaged (PATH.damaged.2 and so on when that is taken,
// unless that one holds the same bytes), so that nothing later overwrites it, and logs one line
// with the reason. False when it could not be moved; it must then not be written to.
bool setAside(const QString &path, const QString &reason);

} // namespace PropertyList
