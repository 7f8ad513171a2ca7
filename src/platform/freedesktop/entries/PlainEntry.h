// A desktop entry as GIO is to launch it when the bus has no part in it. GIO takes a changed entry
// only in the form of its own GKeyFile, which is why that reads the file here.

#pragma once

#include "platform/freedesktop/base/GioPointer.h"

#include <QByteArray>
#include <QString>

#include <gio/gdesktopappinfo.h>

// The entry at a path without its name on the bus, and without a byte order mark, which GIO cannot
// read. With the ID of one of its actions, that action's command line stands in place of its own.
// Null when GIO refuses the entry: among other things when the program is missing. GIO takes it
// for an entry without a file.
GioPointer<GDesktopAppInfo> plainEntry(const QString &path, const QByteArray &action = {});
