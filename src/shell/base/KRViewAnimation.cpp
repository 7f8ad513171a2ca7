#include "shell/base/KRViewAnimation.h"

#include "platform/OwnWindows.h"

#include <QWidget>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr double DefaultSeconds = 0.5;
// Milliseconds, one picture of most displays.
constexpr int FirstStep = 16;

QEasingCurve cubic(const QPointF &first, const QPointF &second)
{
    QEasingCurve curve(QEasingCurve::BezierSpline);
    curve.addCubicBezierSegment(first, second, { 1, 1 });
    return curve;
}

// Edges that move by the same distance stay as far apart in each step.
int between(int start, int end, double progress)
{
    return start + int(std::floor(progress * (end - start) + 0.5));
}

QRect between(const QRect &start, const QRect &end, double progress)
{
    QRect rect;
    rect.setCoords(between(start.left(), end.left(), progress),
        between(start.top(), end.top(), progress), between(start.right(), end.right(), progress),
        between(start.bottom(), end.bottom(), progress));
    return rect;
}

double endAlpha(const ViewAnimation &animation)
{
    switch (animation.fade) {
    case ViewAnimation::Fade::In:
        return 1;
    case ViewAnimation::Fade::Out:
        return 0;
    default:
        return animation.endAlpha;
    }
}

} // namespace

AnimatedView AnimatedView::window(QWidget &window, OwnWindows &ownWindows)
{
    AnimatedView view;
    view.context = &window;
    view.frame = [&window] { return window.geometry(); };
    view.setFrame = [&window](const QRect &rect) { window.setGeometry(rect); };
    view.alpha = [&window] { return window.windowOpacity(); };
    view.setAlpha = [&window](double opacity) { window.setWindowOpacity(opacity); };
    view.hide = [&window] { window.setVisible(false); };
    view.flush = [&ownWindows] { ownWindows.flush(); };
    return view;
}

KRViewAnimation::KRViewAnimation(QObject *parent)
    : QAbstractAnimation(parent)
    , _curve(easeInOut())
{
    setSeconds(DefaultSeconds);
    connect(this, &QAbstractAnimation::finished, this, &KRViewAnimation::end);
}

QEasingCurve KRViewAnimation::easeInOut()
{
    return cubic({ 0.42, 0 }, { 0.58, 1 });
}

QEasingCurve KRViewAnimation::easeIn()
{
    return cubic({ 0.42, 0 }, { 1, 1 });
}

QEasingCurve KRViewAnimation::easeOut()
{
    return cubic({ 0, 0 }, { 0.58, 1 });
}

void KRViewAnimation::setViewAnimations(const QList<ViewAnimation> &animations)
{
    _courses.clear();
    for (const ViewAnimation &animation : animations) {
        _courses.append({ animation });
    }
}

void KRViewAnimation::setSeconds(double seconds)
{
    constexpr double longest = std::numeric_limits<int>::max();
    _duration = seconds > 0 ? int(std::min(std::round(seconds * 1000), longest)) : 0;
}

void KRViewAnimation::startAnimation()
{
    stop();
    if (_duration > 0) {
        start();
        setCurrentTime(std::min(FirstStep, _duration));
        return;
    }
    rememberStart();
    const int run = ++_run;
    setProgress(1);
    if (run == _run) {
        end();
    }
}

void KRViewAnimation::stopAnimation()
{
    if (!isAnimating()) {
        return;
    }
    stop();
    const int run = _run;
    const QPointer<KRViewAnimation> self(this);
    setProgress(1);
    hideFadedOut();
    if (self && run == _run) {
        Q_EMIT animationDidStop();
    }
}

void KRViewAnimation::rememberStart()
{
    for (Course &course : _courses) {
        const AnimatedView &view = course.animation.view;
        if (!view.context) {
            continue;
        }
        course.endAlpha = endAlpha(course.animation);
        course.startAlpha = view.alpha ? view.alpha() : 1 - course.endAlpha;
        course.startFrame = course.animation.startFrame.value_or(
            view.frame ? view.frame() : course.animation.endFrame.value_or(QRect()));
    }
}

void KRViewAnimation::updateState(State newState, State oldState)
{
    if (oldState == Stopped) {
        rememberStart();
    }
    if (oldState == Stopped || newState == Stopped) {
        ++_run;
    }
}

void KRViewAnimation::updateCurrentTime(int currentTime)
{
    if (isAnimating()) {
        // A curve that is computed does not end at quite 1.
        setProgress(
            currentTime < _duration ? _curve.valueForProgress(double(currentTime) / _duration) : 1);
    }
}

void KRViewAnimation::setProgress(double progress)
{
    // What a step sets off may stop the animation, or have it begin with other views.
    const int run = _run;
    const QList<Course> courses = _courses;
    for (const Course &course : courses) {
        if (run != _run) {
            return;
        }
        step(course, progress);
    }
}

void KRViewAnimation::step(const Course &course, double progress)
{
    const ViewAnimation &animation = course.animation;
    const AnimatedView &view = animation.view;
    if (view.context && view.setFrame && animation.endFrame) {
        view.setFrame(between(course.startFrame, *animation.endFrame, progress));
    }
    if (view.context && view.setAlpha && animation.fade != ViewAnimation::Fade::None) {
        view.setAlpha(course.startAlpha + progress * (course.endAlpha - course.startAlpha));
    }
    if (view.context && view.flush) {
        view.flush();
    }
}

void KRViewAnimation::hideFadedOut()
{
    const int run = _run;
    const QPointer<KRViewAnimation> self(this);
    const QList<Course> courses = _courses;
    for (const Course &course : courses) {
        const AnimatedView &view = course.animation.view;
        if (!self || run != _run) {
            return;
        }
        if (view.context && view.hide && course.animation.fade == ViewAnimation::Fade::Out) {
            view.hide();
        }
    }
}

void KRViewAnimation::end()
{
    const int run = _run;
    const QPointer<KRViewAnimation> self(this);
    hideFadedOut();
    if (self && run == _run) {
        Q_EMIT animationDidEnd();
    }
}
