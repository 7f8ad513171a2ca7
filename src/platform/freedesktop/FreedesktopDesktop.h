// The freedesktop desktop: the one header of this folder that the rest of the program sees.

#pragma once

#include "platform/Desktop.h"

#include <memory>

// Reads the environment (XDG folders, locale, current desktop) once, here. Needs a
// QCoreApplication; watches for another icon theme only when its event loop runs.
std::unique_ptr<Desktop> makeFreedesktopDesktop();
