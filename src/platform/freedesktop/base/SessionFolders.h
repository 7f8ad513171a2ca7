// The folders that the environment gives to a session, by the XDG base directory specification, and
// the names of its desktop.
//
// All are absolute and in standard form. A variable that is not set, or that names no absolute
// folder, stands for the usual one; none of them need exist.

#pragma once

#include <QStringList>

namespace SessionFolders {

QString dataHome();
QString configurationHome();
QString stateHome();
QString cacheHome();

// The shared ones after the user's own, the most important one first, each once. Last among the
// data folders, and only where they exist, are those to which Flatpak and Snap export: a session
// that was not started by way of their profile scripts does not name them.
QStringList sharedData();
QStringList sharedConfiguration();

// The names by which the running desktop goes, the most particular one first.
QStringList currentDesktops();

} // namespace SessionFolders
