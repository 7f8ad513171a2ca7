// The file that a crash leaves: "Logs/CrashReporter/Ortu_YEAR-MONTH-DAY-HHMMSS.crash" in the user's
// Library folder, the date in UTC.

#pragma once

#include "platform/freedesktop/crash/SafeText.h"

#include <QByteArray>

namespace CrashFile {

// At the start of the program: makes nothing yet. Not for a folder whose path is longer than the
// system takes.
void prepare(const QByteArray &libraryFolder);

// In the signal handler: makes the folders that are missing and a new file that the user alone can
// read. Writes nothing through a link in the place of the last folder, and never into a file that
// exists. False when there is no file.
bool begin(SafeText &text, std::time_t now);
// In the signal handler: brings the file to the disk, or removes it when nothing could be written.
void end(const SafeText &text);

// Anywhere else: deletes all but the newest twenty logs.
void removeOld();

} // namespace CrashFile
