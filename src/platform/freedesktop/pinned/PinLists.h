// What each dock or panel has pinned, in its order, as its own files name it.
//
// A name is a desktop-file ID, an absolute path, or one of the URLs that PinResolver knows. It may
// be there twice, and need not stand for anything that is installed. A list that does not exist, is
// damaged or longer than any user's is empty; only a damaged one is told by a log line.

#pragma once

#include <QStringList>

namespace PinLists {

// The favourites of GNOME Shell. Those that come with the desktop count only where it is running.
QStringList gnomeShell(bool isRunning);

// The launchers of Plasma's task managers. Those that a task manager has of itself, before the user
// changes any, are looked for in the data folders; none given, they do not count.
QStringList plasma(const QString &configurationHome, const QStringList &dataFolders);

// The launchers on Xfce's panels, panel by panel. Panels have copies of entries, and name where
// these came from.
QStringList xfce(const QString &configurationHome);

// The launchers in Plank's docks.
QStringList plank(const QString &configurationHome);

// The applications in `com.apple.dock.plist` in a folder of preferences, as paths.
QStringList dockFile(const QString &preferencesFolder);

} // namespace PinLists
