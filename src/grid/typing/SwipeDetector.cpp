#include "grid/typing/SwipeDetector.h"

namespace {

// Seconds without an event after which the next one belongs to another gesture.
constexpr double Pause = 0.15;

} // namespace

SwipeDetector &SwipeDetector::shared()
{
    static SwipeDetector detector;
    return detector;
}

SwipeDetector::Event SwipeDetector::next(double timeStamp, qint64 now)
{
    double interval = timeStamp - _timeStamp;
    if (interval <= 0) {
        interval = double(now - _handled) / 1000;
    }
    _timeStamp = timeStamp;
    _handled = now;

    // The second event counts however late it comes: a wheel with notches is turned slowly.
    const bool hasPaused = _eventCount > 1 && interval > Pause;
    if (_eventCount == 0 || hasPaused) {
        _eventCount = 1;
        _hasSwiped = false;
        return Event::Starts;
    }
    ++_eventCount;
    return _hasSwiped ? Event::TrailsSwipe : Event::Continues;
}
