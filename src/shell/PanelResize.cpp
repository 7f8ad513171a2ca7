#include "shell/PanelResize.h"

#include "platform/OwnWindows.h"
#include "shell/KRViewAnimation.h"

#include <QGraphicsOpacityEffect>
#include <QWidget>

namespace {

// Every step at one alpha, drawn by the effect that the view has for that time only.
AnimatedView viewWithEffect(QWidget &view, QGraphicsOpacityEffect &effect)
{
    AnimatedView animated;
    animated.context = &view;
    animated.alpha = [&effect] { return effect.opacity(); };
    animated.setAlpha = [&effect](double alpha) { effect.setOpacity(alpha); };
    return animated;
}

ViewAnimation fadeIn(const AnimatedView &view)
{
    return { .view = view,
        .startFrame = std::nullopt,
        .endFrame = std::nullopt,
        .fade = ViewAnimation::Fade::In };
}

} // namespace

PanelResize::PanelResize(QWidget &panel, QWidget &grid, OwnWindows &ownWindows)
    : _panel(panel)
    , _grid(grid)
    , _ownWindows(ownWindows)
{
    _fade.setAnimationCurve(KRViewAnimation::easeIn());
    // By themselves, and when finish() brings them there.
    for (const auto ended :
        { &KRViewAnimation::animationDidEnd, &KRViewAnimation::animationDidStop }) {
        connect(&_growth, ended, this, &PanelResize::comeBack);
        connect(&_fade, ended, this, &PanelResize::end);
    }
}

PanelResize::~PanelResize()
{
    _growth.disconnect(this);
    _fade.disconnect(this);
}

void PanelResize::start(const QRect &frame, double seconds)
{
    finish();
    _step = Step::Going;
    auto *const effect = new QGraphicsOpacityEffect(&_grid);
    // What was shown has gone already, and what is to come has no place before the end.
    effect->setOpacity(0);
    _grid.setGraphicsEffect(effect);
    _view = viewWithEffect(_grid, *effect);
    _growth.setViewAnimations({ { .view = AnimatedView::window(_panel, _ownWindows),
        .startFrame = std::nullopt,
        .endFrame = frame } });
    _growth.setSeconds(seconds);
    _fade.setSeconds(seconds / 2);
    _growth.startAnimation();
}

void PanelResize::comeBack()
{
    if (_step != Step::Going) {
        return;
    }
    _step = Step::Coming;
    Q_EMIT panelResized();
    _fade.setViewAnimations({ fadeIn(_view) });
    _fade.startAnimation();
}

void PanelResize::finish()
{
    _growth.stopAnimation();
    _fade.stopAnimation();
}

void PanelResize::end()
{
    if (_step != Step::Coming) {
        return;
    }
    _step = Step::Idle;
    _grid.setGraphicsEffect(nullptr);
}
