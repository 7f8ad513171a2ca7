// Moves and fades windows and views over a time, all of them together.
//
// Each step is between where a view was when the animation began and where it is to end; so an
// animation that takes the place of another half way goes on from there without a jump. It does
// not block, and no timer runs while it does not. A view that goes away meanwhile is left out.

#pragma once

#include <QAbstractAnimation>
#include <QEasingCurve>
#include <QList>
#include <QPointer>
#include <QRect>

#include <functional>
#include <optional>

class OwnWindows;
class QWidget;

// How something is moved and faded. What is not given is not done; alphas are 0 to 1.
struct AnimatedView
{
    // Nothing else is called once this is gone.
    QPointer<QObject> context;
    std::function<QRect()> frame;
    std::function<void(const QRect &)> setFrame;
    std::function<double()> alpha;
    std::function<void(double)> setAlpha;
    std::function<void()> hide;
    // Called at the end of each step.
    std::function<void()> flush;

    // A window of its own: geometry and opacity. The object that knows the windows must outlive it.
    static AnimatedView window(QWidget &window, OwnWindows &ownWindows);
};

struct ViewAnimation
{
    // In ends at alpha 1, Out at 0 with the view hidden, To at an alpha that is given.
    enum class Fade { None, In, Out, To };

    AnimatedView view {};
    // The start is where the view is when the animation begins, unless it is given. Without an end
    // the view is not moved.
    std::optional<QRect> startFrame {};
    std::optional<QRect> endFrame {};
    Fade fade = Fade::None;
    double endAlpha = 1;
};

class KRViewAnimation : public QAbstractAnimation
{
    Q_OBJECT

public:
    // Half a second, slow at both ends.
    explicit KRViewAnimation(QObject *parent = nullptr);

    // The curves that the names stand for everywhere: cubic, with control points at 0.42 of the
    // time for the slow start and at 0.58 for the slow end. A sine is close, but not the same.
    static QEasingCurve easeInOut();
    static QEasingCurve easeIn();
    static QEasingCurve easeOut();

    // All three are for an animation that is not running.
    void setViewAnimations(const QList<ViewAnimation> &animations);
    void setSeconds(double seconds);
    void setAnimationCurve(const QEasingCurve &curve) { _curve = curve; }

    bool isAnimating() const { return state() != Stopped; }
    int duration() const override { return _duration; }

    // Begins with what the first frame on the screen is to show. Without a duration everything is
    // at its end at once. One that runs begins anew from where it is.
    void startAnimation();
    // Brings everything to its end at once; nothing when not animating. QAbstractAnimation::stop()
    // leaves everything where it is and announces nothing.
    void stopAnimation();

Q_SIGNALS:
    // Everything is at its end, by itself or because it was stopped.
    void animationDidEnd();
    void animationDidStop();

protected:
    void updateCurrentTime(int currentTime) override;
    void updateState(State newState, State oldState) override;

private:
    // A view with what it was like at the beginning.
    struct Course
    {
        ViewAnimation animation;
        QRect startFrame {};
        double startAlpha = 1;
        double endAlpha = 1;
    };

    void rememberStart();
    void setProgress(double progress);
    void hideFadedOut();
    void end();
    static void step(const Course &course, double progress);

    QList<Course> _courses;
    QEasingCurve _curve;
    // Milliseconds.
    int _duration = 0;
    // Changes with each beginning and end, so that a step notices that it is out of date.
    int _run = 0;
};
