// Starting the application of a desktop entry through GIO.

#pragma once

#include "platform/Launcher.h"

// Starts what the entry file at a path names and hands it the documents. Blocks for as long as it
// takes to ask, at most some ten seconds; may be called from any thread. Logs nothing but debug
// lines.
LaunchStatus launchEntry(const QString &path, const QList<QUrl> &documents);

// In the same way, performs one of the actions that the entry lists.
LaunchStatus launchEntryAction(const QString &path, const QString &actionId);

// In the same way, runs the entry's command line, without asking the bus for what runs already.
LaunchStatus launchEntryAgain(const QString &path);
