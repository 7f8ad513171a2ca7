// What the program does when it is called, one function a verb of the command line.
//
// Each returns the exit code of the program: 0, or 1 on failure, or 2 for wrong use, after one line
// to standard error. The preferences are set up, and a Qt application of the right kind exists.

#pragma once

#include "commands/CommandLine.h"

#include <optional>

class Desktop;
class SingleInstance;
struct InstanceRequest;

namespace Commands {

// What kind of application the verb needs: one without pictures, one that reads and draws pictures
// (an icon may hold text, which takes fonts), or one with widgets.
enum class Drawing { Nothing, Pictures, Widgets };
Drawing drawing(const Invocation &invocation);
// Whether the verb may write the catalogue's files and the preferences.
bool mayWrite(const Invocation &invocation);

// Whether the verb speaks to the program that runs, and whether it starts the program when none
// does.
bool concernsInstance(const Invocation &invocation);
bool startsProgram(const Invocation &invocation);
// What the verb asks of the program that runs.
InstanceRequest instanceRequest(const Invocation &invocation);
// Asks it. The exit code; empty when none runs and the verb starts one. Fails without asking when a
// file that it names does not exist. Needs no application object.
std::optional<int> tellRunningInstance(const Invocation &invocation, SingleInstance &instance);

// Every default of every module.
void registerDefaults(const Desktop &desktop);
// Applies the --set options for this run; empty, or what is wrong with one of them.
QString applySettings(const Invocation &invocation);

int run(const Invocation &invocation, Desktop &desktop);

// The first text of a program costs Qt a good part of the start: all fonts of the system are looked
// through. This does it on a thread, beside what needs no text. Needs an application object.
void readyFonts();

// Runs the program until its end, unless another start was quicker.
int start(const Invocation &invocation, Desktop &desktop, SingleInstance &instance);
// Whether an icon is still being decoded, which may take long. Until it ends, the desktop must
// live.
bool isDecoding();
int list(const Invocation &invocation, Desktop &desktop);
int colors(const Invocation &invocation, Desktop &desktop);
int layout(const Invocation &invocation, Desktop &desktop);
int defaults(const Invocation &invocation, const Desktop &desktop);
int screenshot(const Invocation &invocation, Desktop &desktop);
// Settings to a file, and from one.
int exportSettings(const Invocation &invocation, const Desktop &desktop);
int importSettings(const Invocation &invocation, const Desktop &desktop);

} // namespace Commands
