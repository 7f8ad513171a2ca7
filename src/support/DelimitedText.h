// Tables as plain text: a line is a record, a separator stands between its fields, and the first
// line names the columns.

#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QVariantMap>

namespace DelimitedText {

// Columns beyond this many are left out.
inline constexpr qsizetype maximumColumns = 1024;

// The text in the encoding that a byte order mark declares; without one it is UTF-8, or Latin-1
// when it cannot be that.
QString decoded(const QByteArray &data);

// A record {"keys": names of the columns as QStringList}, then one for each further line: column
// name to field. Lines end with LF, CR or both; empty ones and those that begin with "#" count
// nowhere, not even before the header. Empty fields, fields beyond the header's width and records
// of nothing else are left out. Empty when there is no header.
QList<QVariantMap> records(const QString &text, QChar separator = u'\t');

} // namespace DelimitedText
