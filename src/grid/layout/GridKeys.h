// The names of the preferences that the grid reads.

#pragma once

#include <QString>

namespace GridKeys {

inline const QString groupOrientation = QStringLiteral("groupOrientation");
inline const QString iconReadingOrder = QStringLiteral("iconReadingOrder");
inline const QString minimizeEmptyCells = QStringLiteral("minimizeEmptyCells");
inline const QString maximumIconSize = QStringLiteral("maximumIconSize");
inline const QString iconPadding = QStringLiteral("iconPadding");
inline const QString iconSpacing = QStringLiteral("iconSpacing");
inline const QString reverseScrollWheel = QStringLiteral("reverseScrollWheel");
inline const QString groupContentsSortOrder = QStringLiteral("groupContentsSortOrder");
// The group that was shown last, by its number.
inline const QString groupShownWhenWindowClosed = QStringLiteral("groupShownWhenWindowClosed");

} // namespace GridKeys
