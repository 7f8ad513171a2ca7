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

// The shared ones after the user's own, the most important one first, each once.
QStringList sharedData();
QStringList sharedConfiguration();

// The names by which the running desktop goes, the most particular one first.
QStringList currentDesktops();

} // namespace SessionFolders
