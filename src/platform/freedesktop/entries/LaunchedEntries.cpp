#include "platform/freedesktop/entries/LaunchedEntries.h"

#include <QList>
#include <QMutex>

#include <algorithm>

namespace {

constexpr qsizetype mostLaunches = 64;

struct Launch
{
    QString startupId;
    QString path;
};

struct Launches
{
    QMutex mutex;
    // The oldest first.
    QList<Launch> list;
};

Launches &launches()
{
    static Launches launches;
    return launches;
}

} // namespace

void LaunchedEntries::remember(const QString &startupId, const QString &path)
{
    if (startupId.isEmpty()) {
        return;
    }
    Launches &all = launches();
    const QMutexLocker lock(&all.mutex);
    if (all.list.size() == mostLaunches) {
        all.list.removeFirst();
    }
    all.list.append({ startupId, path });
}

QString LaunchedEntries::entryOf(const QString &startupId)
{
    Launches &all = launches();
    const QMutexLocker lock(&all.mutex);
    const auto isIt = [&startupId](const Launch &launch) { return launch.startupId == startupId; };
    const auto found = std::find_if(all.list.cbegin(), all.list.cend(), isIt);
    return found == all.list.cend() ? QString() : found->path;
}
