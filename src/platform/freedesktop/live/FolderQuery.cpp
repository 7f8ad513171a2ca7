#include "platform/freedesktop/live/FolderQuery.h"

#include "platform/freedesktop/base/Log.h"

#include <QSet>
#include <QSocketNotifier>

#include <algorithm>
#include <fcntl.h>
#include <unistd.h>

namespace {

// Installing a program is many events; they are looked at together this much after the first one.
constexpr std::chrono::milliseconds SettlingTime(100);
// In one update, so that the main thread is not busy with it for long.
constexpr qsizetype MostPaths = 100;

using PathSets = QSet<QSet<QString>>;

PathSets setsOf(const QList<QStringList> &lists)
{
    PathSets sets;
    for (const QStringList &list : lists) {
        if (!list.isEmpty()) {
            sets.insert(QSet<QString>(list.begin(), list.end()));
        }
    }
    return sets;
}

QSet<QString> united(const PathSets &sets)
{
    QSet<QString> all;
    for (const QSet<QString> &set : sets) {
        all.unite(set);
    }
    return all;
}

} // namespace

FolderQuery::FolderQuery(Items &items, const Limits &limits, const std::atomic<int> &current)
    : _items(items)
    , _limits(limits)
    , _current(current)
    , _mountTable(::open("/proc/self/mountinfo", O_RDONLY | O_CLOEXEC))
{
    _settling.setSingleShot(true);
    _settling.setInterval(SettlingTime);
    connect(&_settling, &QTimer::timeout, this, &FolderQuery::lookAtTouched);
    _poll.setSingleShot(true);
    _poll.setInterval(limits.pollInterval);
    connect(&_poll, &QTimer::timeout, this, [this] {
        _folders->touchAll();
        lookAtTouched();
    });
    if (_mountTable >= 0) {
        // The kernel reports a change of this file as urgent data.
        _mounts = std::make_unique<QSocketNotifier>(_mountTable, QSocketNotifier::Exception);
        connect(_mounts.get(), &QSocketNotifier::activated, this, [this] {
            if (_folders) {
                _folders->touchRemounted();
                _settling.start();
            }
        });
    }
}

FolderQuery::~FolderQuery()
{
    _mounts.reset();
    if (_mountTable >= 0) {
        ::close(_mountTable);
    }
}

void FolderQuery::stop()
{
    _settling.stop();
    _poll.stop();
    _events.reset();
    _folders.reset();
}

void FolderQuery::start(int number, const LiveQuery::Scope &scope, const QList<QStringList> &known)
{
    stop();
    _number = number;
    if (isStale()) {
        return;
    }
    _folders = std::make_unique<WatchedFolders>(
        _items, scope, [this] { return isStale(); }, _limits.watches);
    if (_folders->descriptor() >= 0) {
        _events = std::make_unique<QSocketNotifier>(_folders->descriptor(), QSocketNotifier::Read);
        connect(_events.get(), &QSocketNotifier::activated, this, [this] {
            // Events that follow wait in the kernel.
            _events->setEnabled(false);
            _settling.start();
        });
    }
    _folders->lookAtTouched();
    compareWith(known);
    wait();
}

void FolderQuery::compareWith(const QList<QStringList> &known)
{
    const PathSets knownSets = setsOf(known);
    const PathSets foundSets = setsOf(_folders->results());
    const QSet<QString> knownPaths = united(knownSets);
    const QSet<QString> foundPaths = united(foundSets);
    ChangeSet changes;
    for (const QString &path : foundPaths - knownPaths) {
        changes.add(path);
    }
    for (const QString &path : knownPaths - foundPaths) {
        changes.remove(path);
    }
    tell(changes, changes.isEmpty() && knownSets != foundSets);
}

void FolderQuery::lookAtTouched()
{
    _folders->readEvents();
    if (_folders->isTouched()) {
        const bool isIncomplete = _folders->takeIsIncomplete();
        tell(_folders->lookAtTouched(), isIncomplete);
    }
    wait();
}

void FolderQuery::wait()
{
    if (_events) {
        _events->setEnabled(true);
    }
    if (_folders->isShortOfWatches() && !isStale()) {
        if (!_isShortageTold) {
            qCWarning(lcPlatform,
                "cannot watch all folders: no inotify watches left; looking at them every %lld s",
                static_cast<long long>(_limits.pollInterval / std::chrono::seconds(1)));
        }
        _isShortageTold = true;
        _poll.start();
    }
}

void FolderQuery::tell(const ChangeSet &changes, bool isIncomplete)
{
    QList<LiveQuery::Update> parts = changes.inParts(MostPaths);
    if (isIncomplete && parts.isEmpty()) {
        parts.append(LiveQuery::Update());
    }
    if (!parts.isEmpty() && !isStale()) {
        parts.first().isIncomplete = isIncomplete;
        Q_EMIT didUpdate(_number, parts);
    }
}
