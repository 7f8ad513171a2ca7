#include "shell/selector/SpringLoading.h"

#include "support/UserDefaults.h"

#include <QTimerEvent>

#include <algorithm>
#include <cmath>

namespace {

constexpr double UsualDelay = 0.5;
constexpr double LongestDelay = 24 * 60 * 60;

const QString delayKey = QStringLiteral("com.apple.springing.delay");

} // namespace

void SpringLoading::registerDefaults()
{
    UserDefaults::standard().registerDefaults({ { delayKey, UsualDelay } });
}

double SpringLoading::delay()
{
    const double seconds = UserDefaults::standard().doubleForKey(delayKey);
    return seconds < 0 ? UsualDelay : std::min(seconds, LongestDelay);
}

void SpringLoading::dragMovedTo(int item)
{
    if (item == _item) {
        return;
    }
    _item = item;
    _timer.stop();
    if (_item != -1) {
        _timer.start(int(std::lround(delay() * 1000)), this);
    }
}

void SpringLoading::timerEvent(QTimerEvent *event)
{
    if (event->timerId() == _timer.timerId()) {
        _timer.stop();
        Q_EMIT opened(_item);
    }
}
