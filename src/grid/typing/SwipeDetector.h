// Tells the gestures apart that the events of a horizontal wheel or touchpad belong to.
//
// The first event of a gesture only starts it; a pause after the second or a later one ends it. One
// gesture makes at most one swipe. All grids share a detector, as a gesture goes on when the
// pointer passes from one to another.

#pragma once

#include <QtGlobal>

class SwipeDetector final
{
public:
    enum class Event {
        Starts, // a gesture, and is not counted
        Continues,
        TrailsSwipe // the gesture has had its swipe
    };

    static SwipeDetector &shared();

    // The time stamp, in seconds, is the event's own; now, in milliseconds, counts where time
    // stamps do not advance, so that devices without them do not go on with one gesture for ever.
    Event next(double timeStamp, qint64 now);
    // The direction turned: the next event starts a gesture.
    void turn() { _eventCount = 0; }
    void swipe() { _hasSwiped = true; }

private:
    double _timeStamp = 0;
    qint64 _handled = 0;
    // Of the present gesture.
    unsigned _eventCount = 0;
    bool _hasSwiped = false;
};
