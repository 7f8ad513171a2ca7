// What was started last, by the start-up identifiers that the programs got along: a window that
// carries one of them belongs to the entry or bundle of that launch.
//
// Only the last 64 are kept; a window that shows up later than that has to be known by other signs.
// Everything may be used from any thread.

#pragma once

#include <QString>

namespace LaunchedEntries {

// To be called before the program can run. An empty identifier is not kept.
void remember(const QString &startupId, const QString &path);

// The path, as it was given to be launched, of the desktop entry or of the bundle. Empty when the
// identifier is not one of ours, or has been forgotten.
QString entryOf(const QString &startupId);

} // namespace LaunchedEntries
