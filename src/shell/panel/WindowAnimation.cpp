#include "shell/panel/WindowAnimation.h"

#include "platform/OwnWindows.h"

#include <QWidget>

#include <algorithm>
#include <utility>

WindowAnimation::WindowAnimation(QWidget &window, OwnWindows &ownWindows,
    std::function<bool()> mayFade, std::function<bool()> mayMove, QObject *parent)
    : QObject(parent)
    , _window(window)
    , _ownWindows(ownWindows)
    , _mayFade(std::move(mayFade))
    , _mayMove(std::move(mayMove))
    , _fade(this)
    , _slide(this)
{
    _fade.setAnimationCurve(KRViewAnimation::easeIn());
    _slide.setAnimationCurve(KRViewAnimation::easeIn());
    connect(&_fade, &KRViewAnimation::animationDidEnd, this, &WindowAnimation::fadeDidEnd);
    connect(&_fade, &KRViewAnimation::animationDidStop, this, &WindowAnimation::fadeDidEnd);
}

void WindowAnimation::fadeInOver(double seconds, const std::function<void()> &show)
{
    const bool isHidden = !_window.isVisible();
    _fade.stop();
    _isFadingOut = false;
    if (isHidden) {
        // Before it is there, or it would be seen for a moment.
        setOpacity(_mayFade() && seconds > 0 ? 0 : 1);
        show();
    }
    if (_window.windowOpacity() < 1) {
        fadeOver(Fade::In, 1, seconds);
    }
}

void WindowAnimation::fadeOutOver(double seconds)
{
    if (!_window.isVisible() || _isFadingOut) {
        return;
    }
    fadeOver(Fade::Out, 0, seconds);
}

void WindowAnimation::fadeToAlphaOver(double alpha, double seconds)
{
    fadeOver(Fade::To, std::clamp(alpha, 0.0, 1.0), seconds);
}

void WindowAnimation::slideFrameToOver(const QRect &frame, double seconds, Fade fade)
{
    _slide.stop();
    ViewAnimation slide { AnimatedView::window(_window, _ownWindows) };
    slide.endFrame = frame;
    _slide.setViewAnimations({ slide });
    _slide.setSeconds(_mayMove() ? seconds : 0);
    _slide.startAnimation();
    if (fade == Fade::Out) {
        fadeOutOver(seconds);
    }
}

void WindowAnimation::fadeOver(Fade fade, double alpha, double seconds)
{
    _fade.stop();
    _isFadingOut = fade == Fade::Out;
    if (!_mayFade()) {
        if (_isFadingOut) {
            setOpacity(0);
            _window.setVisible(false);
            fadeDidEnd();
        } else {
            setOpacity(1);
        }
        return;
    }
    _fade.setViewAnimations(
        { { AnimatedView::window(_window, _ownWindows), {}, {}, fade, alpha } });
    _fade.setSeconds(seconds);
    _fade.startAnimation();
}

void WindowAnimation::fadeDidEnd()
{
    if (std::exchange(_isFadingOut, false)) {
        Q_EMIT fadedOut();
    }
}

void WindowAnimation::setOpacity(double opacity)
{
    _window.setWindowOpacity(opacity);
    _ownWindows.flush();
}
