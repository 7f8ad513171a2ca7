// The freedesktop desktop. The program comes to it through makePlatform().

#pragma once

#include "platform/Desktop.h"
#include "platform/SingleInstance.h"

#include <memory>

class EntryReading;

// Begins to read the desktop entries on a thread, for the desktop that is made next. Needs no
// application object.
std::shared_ptr<EntryReading> readFreedesktopEntries();

// Reads the environment (XDG folders, locale, current desktop) once, here. Needs a
// QCoreApplication; an entry that was not read before is read when it is needed.
std::unique_ptr<Desktop> makeFreedesktopDesktop(std::shared_ptr<EntryReading> reading = {});

// For the program of this session. Needs no display and no application object; for other starts to
// be heard, the event loop has to run.
std::unique_ptr<SingleInstance> makeFreedesktopInstance();
