// What the signals of a crash are called, without a locale; for signal handlers.

#pragma once

namespace SignalNames {

// "SIGSEGV" and its like; "?" for a signal that is no crash.
const char *name(int signal);

// Of si_code: "SEGV_MAPERR" and its like; "?" when unknown.
const char *codeName(int signal, int code);

} // namespace SignalNames
