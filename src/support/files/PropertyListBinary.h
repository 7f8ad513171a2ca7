// The binary form of a property list, read only.
//
// Objects refer to one another by number, so a small file can describe an endless or a vast value.
// Depth, references and bytes are therefore counted as they are followed, and reading stops at a
// limit.

#pragma once

#include <QByteArray>
#include <QString>
#include <QVariant>

#include <optional>

namespace PropertyList {

bool isBinary(const QByteArray &data);

std::optional<QVariant> fromBinary(const QByteArray &data, QString *error);

} // namespace PropertyList
