// The parts of the program that are loaded when they are first needed, because of the libraries
// that they bring along.

#pragma once

#include <QString>
#include <QtGlobal>

namespace ProgramModule {

// A function of the module with this name (`ortu-pages`), which stays loaded from then on. It is
// looked for beside the program in the folder it was built in, and where it is installed. Null,
// after one log line with `purpose`, when the module is missing or was built for another version of
// the program, as after an update of Ortu while it runs.
QFunctionPointer resolve(const QString &module, const char *function, const char *purpose);

} // namespace ProgramModule
