// Where icons, and the settings that choose among them, are kept in this session. Plain values read
// from the environment; none of the folders need exist.

#pragma once

#include <QString>
#include <QStringList>

struct IconPlaces
{
    QString configHome;
    // After configHome, the most important one first.
    QStringList configDirs;
    // Folders that hold themes, in the order in which they are searched.
    QStringList baseFolders;
    // Folders that hold single pictures of no theme.
    QStringList pixmapFolders;
    // The names of the running desktop in lower case, the most specific one first.
    QStringList desktops;

    // Entries that are no absolute paths are left out, as the base directory standard demands.
    static IconPlaces fromEnvironment();
};
