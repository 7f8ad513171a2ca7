// Starting the program of an AppImage or a bundle folder, and what a child does to become a program
// of its own.

#pragma once

#include "platform/Launcher.h"

// Starts a program that outlives us, in the user's home and in its own session, with the documents
// as its arguments. The bundle is what it belongs to. May be called from any thread.
LaunchStatus launchProgram(
    const QString &bundlePath, const QString &program, const QList<QUrl> &documents);

// For the child, between its start and its program's: leaves our session, so that an interrupt
// typed at our terminal does not reach it, and gives back what signals mean to a program by
// default. Goes to the folder unless that is null or cannot be entered. Calls only what POSIX
// allows between fork() and exec() in a program with threads.
void becomeIndependent(const char *folder);
