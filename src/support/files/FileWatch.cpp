#include "support/files/FileWatch.h"

#include <QFileInfo>

#include <chrono>
#include <utility>

using namespace std::chrono_literals;

namespace {

// Replacing a file is several events; this much later it is read once for all of them.
constexpr auto settlingTime = 50ms;

QString nearestFolder(const QString &path)
{
    QFileInfo folder(path);
    while (!folder.isDir() && !folder.isRoot()) {
        folder.setFile(folder.absolutePath());
    }
    return folder.absoluteFilePath();
}

} // namespace

FileWatch::FileWatch(QStringList paths, QObject *parent)
    : QObject(parent)
    , _paths(std::move(paths))
{
    _settling.setSingleShot(true);
    _settling.setInterval(settlingTime);
    connect(&_settling, &QTimer::timeout, this, [this] {
        // Watched first, so that a change after the reading is not missed.
        watch();
        Q_EMIT changed();
    });
    const auto settle = [this] {
        if (!_settling.isActive()) {
            _settling.start();
        }
    };
    connect(&_watcher, &QFileSystemWatcher::fileChanged, this, settle);
    connect(&_watcher, &QFileSystemWatcher::directoryChanged, this, settle);
    watch();
}

// Watches the files for changes in place and their folder, or the nearest one there is, for
// everything else. Always anew: a watch stays with a file that was replaced or a folder that was
// removed.
void FileWatch::watch()
{
    const QStringList watched = _watcher.files() + _watcher.directories();
    if (!watched.isEmpty()) {
        _watcher.removePaths(watched);
    }
    const QString folder = QFileInfo(_paths.first()).absolutePath();
    QString nearest;
    // A folder made just before its parent was watched would go unnoticed.
    while (nearest != nearestFolder(folder)) {
        nearest = nearestFolder(folder);
        _watcher.addPath(nearest);
    }
    for (const QString &path : std::as_const(_paths)) {
        if (QFileInfo::exists(path)) {
            _watcher.addPath(path);
        }
    }
}
