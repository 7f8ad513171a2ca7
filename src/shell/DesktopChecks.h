// Whether a desktop that keeps its windows in several spaces shows ours in all of them, as its own
// preference files tell. Those files are only read.

#pragma once

#include <QString>

namespace DesktopChecks {

// False when com.apple.spaces.plist in the folder tells of several spaces and does not bind the
// program, by its identifier or the lower-case form of it, to all of them. A file that is absent or
// cannot be read is no reason for an alarm.
bool isOrtuHappyWithMissionControl(
    const QString &libraryPreferencesFolder, const QString &bundleIdentifier);

} // namespace DesktopChecks
