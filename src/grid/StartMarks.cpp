#include "grid/StartMarks.h"

#include "platform/Desktop.h"

#include <QWidget>

#include <cmath>
#include <numbers>

namespace {

// In milliseconds: a pulse, a step of it, and the wait for a start to show or to end.
constexpr qint64 period = 1400;
constexpr int step = 50;
constexpr int rest = 250;
// At its weakest.
constexpr double weakest = 0.4;

} // namespace

StartMarks::StartMarks(const QWidget &view, Desktop &desktop)
    : _view(view)
    , _desktop(desktop)
{
    connect(
        &desktop.runningApplications(), &RunningApplications::startEnded, this, &StartMarks::end);
    connect(&_timer, &QTimer::timeout, this, &StartMarks::tick);
}

void StartMarks::begin(const QString &path)
{
    end(path);
    _begun[path].start();
    _timer.start(rest);
}

void StartMarks::end(const QString &path)
{
    const bool isSeen = isShown(path);
    if (_begun.remove(path) && isSeen) {
        Q_EMIT changed(path);
    }
}

bool StartMarks::isShown(const QString &path) const
{
    const auto begun = _begun.constFind(path);
    return begun != _begun.constEnd() && begun->hasExpired(Delay);
}

bool StartMarks::isStill() const
{
    return _desktop.motion().isReduced();
}

// It begins and ends at full strength.
float StartMarks::strengthOf(const QString &path) const
{
    if (!isShown(path) || isStill()) {
        return 1;
    }
    const double phase = double(_begun[path].elapsed() - Delay) / double(period);
    const double depth = (1 - std::cos(2 * std::numbers::pi * phase)) / 2;
    return float(1 - depth * (1 - weakest));
}

void StartMarks::tick()
{
    bool isPulsing = false;
    for (const QString &path : _begun.keys()) {
        if (_begun[path].hasExpired(LongestStart)) {
            end(path);
        } else if (isShown(path)) {
            isPulsing = true;
            Q_EMIT changed(path);
        }
    }
    if (_begun.isEmpty()) {
        _timer.stop();
    } else {
        _timer.setInterval(isPulsing && _view.isVisible() && !isStill() ? step : rest);
    }
}
