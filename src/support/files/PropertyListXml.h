// The XML form of a property list, read and written with Qt's own streams.
//
// The reader is strict where others guess: every element must be known and stand in its place,
// every number, date and base64 text must be valid, and the document must be well-formed to its
// end, so that a file cut short is never taken for a whole one.

#pragma once

#include <QByteArray>
#include <QString>
#include <QVariant>

#include <optional>

namespace PropertyList {

std::optional<QVariant> fromXml(const QByteArray &data, QString *error);

// Expects a value that plain() gave.
QByteArray plainToXml(const QVariant &value);

} // namespace PropertyList
