// The desktop entries of the session, read on a thread of its own while the start does something
// else. A caller that needs an entry which is not read yet reads it itself.

#pragma once

#include "platform/freedesktop/entries/DesktopEntryIndex.h"

#include <QStringList>

#include <atomic>
#include <thread>

class EntryReading final
{
public:
    explicit EntryReading(const QList<QByteArray> &languages);
    // Waits for the entry that is being read.
    ~EntryReading();
    Q_DISABLE_COPY_MOVE(EntryReading)

    // Reads what lies below these folders. To be called once; needs no application object.
    void start(const QStringList &dataFolders);

    DesktopEntryIndex &entries() { return _entries; }

private:
    void read(const QStringList &dataFolders);

    DesktopEntryIndex _entries;
    std::atomic<bool> _isEnding = false;
    std::thread _thread;
};
