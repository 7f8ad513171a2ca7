// What the wheel does to the grid: vertically it walks a letter of the filter through the alphabet,
// a horizontal swipe asks for the next or the previous group. While the user types it does nothing.

#pragma once

#include "grid/typing/ScrollAccumulator.h"
#include "grid/typing/SwipeDetector.h"

class QWheelEvent;
class TypeFilter;

class GridWheel final
{
public:
    enum class Outcome {
        Nothing,
        FilterAnnounced, // the filter is what it was, but is to be shown
        FilterChanged,
        NextGroup,
        PreviousGroup
    };

    // The detector must outlive the wheel.
    explicit GridWheel(SwipeDetector &detector = SwipeDetector::shared())
        : _detector(detector)
    { }

    // A turn of a wheel as Qt reports it; now is in milliseconds.
    Outcome turned(const QWheelEvent &event, bool isReversed, TypeFilter &filter, qint64 now);

    // Vertical deltas are in lines, a hundred units of angle; horizontal ones in ten units of
    // angle. The time stamp is in seconds, now in milliseconds. A filter that is cleared counts as
    // changed unless the event comes to something else.
    Outcome scroll(double deltaX, double deltaY, double timeStamp, bool isReversed,
        TypeFilter &filter, qint64 now);

private:
    Outcome scrollHorizontally(double deltaX, double timeStamp, qint64 now);

    SwipeDetector &_detector;
    ScrollAccumulator _scrollAccumulatorX;
};
