#include "grid/typing/GridWheel.h"

#include "grid/typing/TypeFilter.h"

#include <QGuiApplication>
#include <QWheelEvent>

#include <cmath>

namespace {

// Smaller movements are noise.
constexpr double DeadZone = 0.0001;
constexpr float SwipeThreshold = 10;

// What a wheel reports for a line, down and across.
constexpr double VerticalUnit = 100;
constexpr double HorizontalUnit = 10;

GridWheel::Outcome outcomeOf(TypeFilter::Wheel wheel)
{
    switch (wheel) {
    case TypeFilter::Wheel::Announce:
        return GridWheel::Outcome::FilterAnnounced;
    case TypeFilter::Wheel::Changed:
        return GridWheel::Outcome::FilterChanged;
    case TypeFilter::Wheel::Ignored:
        break;
    }
    return GridWheel::Outcome::Nothing;
}

} // namespace

// On X Qt turns the wheel on its side while Alt is held, which here means something else.
GridWheel::Outcome GridWheel::turned(
    const QWheelEvent &event, bool isReversed, TypeFilter &filter, qint64 now)
{
    const bool isTurned = event.modifiers().testFlag(Qt::AltModifier)
        && QGuiApplication::platformName() == QLatin1String("xcb");
    const QPoint delta = isTurned ? event.angleDelta().transposed() : event.angleDelta();
    return scroll(delta.x() / HorizontalUnit, delta.y() / VerticalUnit,
        double(event.timestamp()) / 1000, isReversed, filter, now);
}

GridWheel::Outcome GridWheel::scroll(
    double deltaX, double deltaY, double timeStamp, bool isReversed, TypeFilter &filter, qint64 now)
{
    const double dx = std::abs(deltaX);
    const double dy = std::abs(deltaY);
    if (dx < DeadZone && dy < DeadZone) {
        return Outcome::Nothing;
    }
    const bool isSideways = dx > dy;
    const bool isTyping = filter.isFresh(now);
    const qsizetype length = filter.length();
    bool isCleared = false;
    if (length > 1) {
        _scrollAccumulatorX.clear();
        filter.forgetScroll();
        if (isTyping) {
            return Outcome::Nothing;
        }
        filter.reset();
        isCleared = true;
    } else if (length == 1 && isSideways && isTyping) {
        _scrollAccumulatorX.clear();
        return Outcome::Nothing;
    }

    const Outcome outcome = isSideways ? scrollHorizontally(deltaX, timeStamp, now)
                                       : outcomeOf(filter.scrollVertically(deltaY, isReversed));
    return outcome == Outcome::Nothing && isCleared ? Outcome::FilterChanged : outcome;
}

GridWheel::Outcome GridWheel::scrollHorizontally(double deltaX, double timeStamp, qint64 now)
{
    switch (_detector.next(timeStamp, now)) {
    case SwipeDetector::Event::Starts:
        _scrollAccumulatorX.clear();
        return Outcome::Nothing;
    case SwipeDetector::Event::TrailsSwipe:
        return Outcome::Nothing;
    case SwipeDetector::Event::Continues:
        break;
    }
    if (!_scrollAccumulatorX.add(deltaX)) {
        _detector.turn();
        return Outcome::Nothing;
    }
    const int direction = _scrollAccumulatorX.takeStep(SwipeThreshold);
    if (direction == 0) {
        return Outcome::Nothing;
    }
    _detector.swipe();
    return direction > 0 ? Outcome::NextGroup : Outcome::PreviousGroup;
}
