#include "shell/panel/PanelResize.h"

#include "platform/OwnWindows.h"
#include "shell/base/KRViewAnimation.h"
#include "shell/panel/FrameChange.h"

#include <QBackingStore>
#include <QGraphicsOpacityEffect>
#include <QImage>
#include <QPainter>
#include <QWidget>

namespace {

// What a view looks like on the screen, together with what lies behind it.
QImage shownPicture(const QWidget &view)
{
    const QWidget *const window = view.window();
    QPaintDevice *const device =
        window->backingStore() ? window->backingStore()->paintDevice() : nullptr;
    if (!device || device->devType() != QInternal::Image) {
        return {};
    }
    const qreal ratio = device->devicePixelRatio();
    const QRectF place(view.mapTo(window, QPoint()) * ratio, QSizeF(view.size()) * ratio);
    return static_cast<QImage *>(device)->copy(place.toAlignedRect());
}

// The picture of a view, which stays where it is on the screen while its parent keeps its centre
// there. It is seen as far from the edges of its parent as the view was.
class OldGrid final : public QWidget
{
public:
    OldGrid(const QImage &picture, const QWidget &view)
        : QWidget(view.parentWidget())
        , _picture(picture)
        , _pictureSize(view.size())
        , _fromCentre(view.pos() - parentWidget()->rect().center())
        , _fromTopLeft(view.pos())
        , _fromBottomRight(view.geometry().bottomRight() - parentWidget()->rect().bottomRight())
    {
        setAttribute(Qt::WA_TransparentForMouseEvents);
        followParent();
    }

    void followParent()
    {
        const QRect parent = parentWidget()->rect();
        setGeometry(QRect(_fromTopLeft, parent.bottomRight() + _fromBottomRight));
    }
    double alpha() const { return _alpha; }
    void setAlpha(double alpha)
    {
        _alpha = alpha;
        update();
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        // In place of what lies behind, which the picture holds as well.
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        painter.setOpacity(_alpha);
        const QPoint topLeft = parentWidget()->rect().center() + _fromCentre - pos();
        painter.drawImage(QRect(topLeft, _pictureSize), _picture);
    }

private:
    QImage _picture;
    QSize _pictureSize;
    QPoint _fromCentre;
    QPoint _fromTopLeft;
    QPoint _fromBottomRight;
    double _alpha = 1;
};

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

PanelResize::PanelResize(
    QWidget &panel, QWidget &grid, FrameChange &frameChange, OwnWindows &ownWindows)
    : _panel(panel)
    , _grid(grid)
    , _frameChange(frameChange)
    , _ownWindows(ownWindows)
{
    _fadeOfOldGrid.setAnimationCurve(KRViewAnimation::easeOut());
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
    fadeOldGrid(seconds / 2);
    auto *const effect = new QGraphicsOpacityEffect(&_grid);
    // What is to come has no place before the end.
    effect->setOpacity(0);
    _grid.setGraphicsEffect(effect);
    _view = viewWithEffect(_grid, *effect);
    AnimatedView panel = AnimatedView::window(_panel, _ownWindows);
    panel.setFrame = [this](const QRect &step) { _frameChange.setFrame(step); };
    _growth.setViewAnimations({ { .view = panel, .startFrame = std::nullopt, .endFrame = frame } });
    _growth.setSeconds(seconds);
    _fade.setSeconds(seconds / 2);
    _growth.startAnimation();
}

void PanelResize::fadeOldGrid(double seconds)
{
    const QImage picture = shownPicture(_grid);
    if (picture.isNull()) {
        return;
    }
    auto *const old = new OldGrid(picture, _grid);
    old->show();
    AnimatedView view;
    view.context = old;
    view.alpha = [old] { return old->alpha(); };
    view.setAlpha = [old](double alpha) {
        old->followParent();
        old->setAlpha(alpha);
    };
    view.hide = [old] { old->deleteLater(); };
    _fadeOfOldGrid.setViewAnimations({ { .view = view,
        .startFrame = std::nullopt,
        .endFrame = std::nullopt,
        .fade = ViewAnimation::Fade::Out } });
    _fadeOfOldGrid.setSeconds(seconds);
    _fadeOfOldGrid.startAnimation();
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
    _fadeOfOldGrid.stopAnimation();
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
