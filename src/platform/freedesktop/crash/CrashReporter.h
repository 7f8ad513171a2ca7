// Writes a log when the program crashes, for its developers: "Logs/CrashReporter/Ortu_DATE.crash"
// in the user's Library folder, readable by the user alone.
//
// Afterwards the signal takes its usual course, so that exit status and core dump are those of a
// program without this. Whatever fails on the way costs the log or its rest, never the end of the
// program, which comes within ten seconds. Threads other than the main one have no stack for signal
// handlers: one that overflows its own ends the program without a log.

#pragma once

namespace CrashReporter {

// For the signals of a crash that have no handler yet; a later one may call ours as the one before
// it. To be called once, on the main thread, which gets a stack for signal handlers. Does nothing
// in a build with sanitizers, which have handlers of their own.
void install();

// Deletes all but the newest twenty logs. Any thread.
void removeOldLogs();

} // namespace CrashReporter
