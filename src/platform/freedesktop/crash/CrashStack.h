// The stack at a crash, and where the code lies that is on it; for signal handlers.
//
// A line of the stack is the address in memory, the file, and the address in that file for
// addr2line: of the instruction that crashed, or of the call. Following a stack that was written
// over may crash in turn. What was found by then is in the file, and finish() writes the rest.

#pragma once

#include "platform/freedesktop/crash/SafeText.h"

namespace CrashStack {

// At the start of the program, since the first walk makes tables of its own. Of the program's own
// file.
void prepare();

// `context` is what the handler was given. Of a very long stack, the middle is left out.
void write(SafeText &text, void *context);
// The outermost calls, when there are too many in all.
void finish(SafeText &text);

// The instruction that was about to run, and the stack pointer. Nothing on a processor that we do
// not know.
void writeRegisters(SafeText &text, void *context);
// The path and the build ID of the program.
void writeProgram(SafeText &text);
// Every file that code was loaded from: where, which part of it, its build ID and its path.
void writeImages(SafeText &text);

} // namespace CrashStack
