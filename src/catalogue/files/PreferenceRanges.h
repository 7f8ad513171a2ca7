// Which numbers a preference can be in settings that come from elsewhere. Every reader of a
// preference copes with any number, but a file may hold those that leave no icon to be seen.

#pragma once

#include <QString>

namespace PreferenceRanges {

// True for a preference without a range.
bool holds(const QString &key, double value);

} // namespace PreferenceRanges
