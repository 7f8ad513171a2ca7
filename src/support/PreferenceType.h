// Which stored values may stand for a preference of a given type.
//
// The type of a preference is that of its registered default. People and other programs write files
// by hand, so "YES" will do for a boolean and "64" for an integer; what would change the value's
// meaning will not. Values are those that PropertyList::plain() gives.

#pragma once

#include <QString>
#include <QVariant>

namespace PreferenceType {

// The value in the type of `like`; invalid when it cannot stand for it. Whatever the value, an
// invalid `like` leaves it as it is.
QVariant converted(const QVariant &value, const QVariant &like);

// Whether two values are of one type and equal: 1 and true are not.
bool same(const QVariant &value, const QVariant &other);

// The property list's name for the type, such as "integer".
QString name(const QVariant &value);

// Type and, if it is short, content: for the log.
QString described(const QVariant &value);

} // namespace PreferenceType
