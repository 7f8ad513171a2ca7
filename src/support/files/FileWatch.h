// Tells that files of one folder may have changed, whichever program has changed them and however:
// in place, by another file put there, with a folder that comes or goes. Main thread only.

#pragma once

#include <QFileSystemWatcher>
#include <QObject>
#include <QStringList>
#include <QTimer>

class FileWatch final : public QObject
{
    Q_OBJECT

public:
    // Neither the files nor their folder need exist.
    explicit FileWatch(QStringList paths, QObject *parent = nullptr);

Q_SIGNALS:
    // Once for all events of a moment. To be answered by reading the files: what changes after that
    // is told again.
    void changed();

private:
    void watch();

    QStringList _paths;
    QFileSystemWatcher _watcher;
    QTimer _settling;
};
