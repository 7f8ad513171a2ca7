// How the panel comes, goes and gets out of the way: fades and slides of one window.
//
// They begin slowly and do not block. A fade that takes the place of another goes on from the
// opacity that was reached, a slide from the place; a fade and a slide may run at the same time.
// Where the display or the user is against it everything happens at once. Frames are Qt's, y
// growing downwards.

#pragma once

#include "shell/base/KRViewAnimation.h"

#include <functional>

class WindowAnimation : public QObject
{
    Q_OBJECT

public:
    using Fade = ViewAnimation::Fade;

    // The questions are asked at each beginning. The window and the knowledge of windows must
    // outlive this.
    WindowAnimation(QWidget &window, OwnWindows &ownWindows, std::function<bool()> mayFade,
        std::function<bool()> mayMove, QObject *parent = nullptr);

    // A hidden window is shown first, by the caller's way to do so. A fade-out is reversed.
    void fadeInOver(double seconds, const std::function<void()> &show);
    // Hides the window at the end, and leaves it transparent: its frame, which window managers take
    // away later, would be seen once more. Nothing when it is hidden, or fading out already.
    void fadeOutOver(double seconds);
    // Leaves the window there, whatever the alpha, and ends a fade-out.
    void fadeToAlphaOver(double alpha, double seconds);
    // With Fade::Out it fades out over the same time.
    void slideFrameToOver(const QRect &frame, double seconds, Fade fade = Fade::None);

    bool isFadingOut() const { return _isFadingOut; }
    bool isSliding() const { return _slide.isAnimating(); }
    // Brings it to its end at once.
    void finishSlide() { _slide.stopAnimation(); }

Q_SIGNALS:
    // The window was hidden by a fade-out.
    void fadedOut();

private:
    void fadeOver(Fade fade, double alpha, double seconds);
    void fadeDidEnd();
    void setOpacity(double opacity);

    QWidget &_window;
    OwnWindows &_ownWindows;
    std::function<bool()> _mayFade;
    std::function<bool()> _mayMove;
    KRViewAnimation _fade;
    KRViewAnimation _slide;
    bool _isFadingOut = false;
};
