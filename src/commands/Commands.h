// What the program does when it is called, one function a verb of the command line.
//
// Each returns the exit code of the program: 0, or 1 on failure, or 2 for wrong use, after one line
// to standard error. The preferences are set up, and a Qt application of the right kind exists.

#pragma once

#include "commands/CommandLine.h"

class Desktop;

namespace Commands {

// What kind of application the verb needs: one without pictures, one that reads and draws pictures
// (an icon may hold text, which takes fonts), or one with widgets.
enum class Drawing { Nothing, Pictures, Widgets };
Drawing drawing(const Invocation &invocation);
// Whether the verb may write the catalogue's files and the preferences.
bool mayWrite(const Invocation &invocation);

// Every default of every module.
void registerDefaults(const Desktop &desktop);
// Applies the --set options for this run; empty, or what is wrong with one of them.
QString applySettings(const Invocation &invocation);

int run(const Invocation &invocation, Desktop &desktop);

int start(const Invocation &invocation, Desktop &desktop);
int list(const Invocation &invocation, Desktop &desktop);
int colors(const Invocation &invocation, Desktop &desktop);
int layout(const Invocation &invocation, Desktop &desktop);
int defaults(const Invocation &invocation);
int screenshot(const Invocation &invocation, Desktop &desktop);

} // namespace Commands
