// Which numbers a preference can be in settings that come from elsewhere, and by the command line.
// Every reader of a preference copes with any number, but some leave no icon to be seen.

#pragma once

#include <QString>

#include <optional>

namespace PreferenceRanges {

struct Range
{
    double least;
    double most;
};

// None for a preference that may be any number, or is none.
std::optional<Range> rangeOf(const QString &key);

// True for a preference without a range.
bool holds(const QString &key, double value);

} // namespace PreferenceRanges
