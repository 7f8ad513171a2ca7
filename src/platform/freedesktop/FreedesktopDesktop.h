// The freedesktop desktop: the one header of this folder that the rest of the program sees.

#pragma once

#include "platform/Desktop.h"
#include "platform/SingleInstance.h"

#include <memory>

// Reads the environment (XDG folders, locale, current desktop) once, here. Needs a
// QCoreApplication; watches for another icon theme only when its event loop runs.
std::unique_ptr<Desktop> makeFreedesktopDesktop();

// For the program of this session. Needs no display and no application object; for other starts to
// be heard, the event loop has to run.
std::unique_ptr<SingleInstance> makeFreedesktopInstance();
