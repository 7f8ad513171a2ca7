// What the system knows of a process: how it was started, and what it runs.
//
// All of it is read from /proc, once, and may be missing: the process is gone, or another user's.

#pragma once

#include <QString>

struct ProcessTraits
{
    // The desktop entry that this very process was started for, or a script that runs it; a path.
    QString launchedEntry;
    // The entry that a process was started for which has made this one and is gone.
    QString orphanedEntry;
    // The file that is running, links resolved.
    QString executable;
    // What an interpreter was told to run, links resolved; empty when it is no interpreter or was
    // told nothing that is a file.
    QString script;
    // The application file or folder that the executable is a part of.
    QString bundle;
    // The name by which the sandbox knows the application.
    QString flatpakId;
    QString snapName;
    // The ID, without its ending, of the desktop entry for which the session's manager made a unit
    // in which this process is the first.
    QString unitEntryId;

    static ProcessTraits of(qint64 processId);
};

namespace SystemdUnit {

// The entry ID in the name of a unit such as `app-desktop-org.example.Name-1234.scope` or
// `app-org.example.Name@autostart.service`; empty for any other unit.
QString entryIdIn(const QString &unit);

} // namespace SystemdUnit
