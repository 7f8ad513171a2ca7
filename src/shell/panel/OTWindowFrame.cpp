// Where the panel stands: its size from the grid's, its screen, its slides.

#include "grid/OTIconView.h"
#include "platform/Desktop.h"
#include "shell/panel/FrameChange.h"
#include "shell/panel/OTWindow.h"
#include "shell/panel/PanelResize.h"
#include "shell/panel/WindowAnimation.h"
#include "shell/selector/OTIconOverlayView.h"
#include "support/Geometry.h"
#include "support/NotificationCenter.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>

#include <utility>

namespace {

// Seconds.
constexpr double slideTime = 0.25;
// What an empty group is shown in, in points.
constexpr QSizeF emptySize(360, 160);

// The upper edge of the primary screen is 0 in both directions.
QRectF upwards(const QRectF &rect)
{
    return Geometry::flipped(rect, 0);
}

} // namespace

void OTWindow::subviewDidResize(QObject *view)
{
    if (view != _iconView) {
        return;
    }
    // What is under way would bring back the size that it began with.
    _animation->finishSlide();
    _resize->finish();
    const QSizeF grid = _iconView->isEmpty() ? emptySize : _iconView->viewSize();
    const QSizeF size = PanelFrame::sizeForGrid(grid, _margins).expandedTo(QSizeF(leastWidth(), 0));
    if (!isVisible()) {
        changeFrame(QRectF(QPointF(), size), Change::AtOnce);
        layOutGrid();
        return;
    }
    const QRectF centred = PanelFrame::centredOn(currentFrame(), size);
    const QRectF inside = PanelFrame::constrained(centred, visibleFrame());
    // Larger than the screen in both directions, it has no place there.
    // One that the user drags follows at once.
    const bool isHeld = _drag && _drag->isMoving;
    changeFrame(inside.isEmpty() ? centred : inside, isHeld ? Change::AtOnce : Change::AsPreferred);
    layOutGrid();
}

void OTWindow::changeFrame(const QRectF &frame, Change change)
{
    Q_EMIT NotificationCenter::defaultCenter().N_WindowWillResize(this);
    const bool isSlow =
        change == Change::AsPreferred && _useCoreAnimation && !_desktop.motion().isReduced();
    if (isSlow && frame != currentFrame()) {
        _overlay->hide();
        _place = upwards(frame).toRect().topLeft();
        _resize->start(upwards(frame).toRect(), animationResizeTime(frame));
        return;
    }
    setFrame(frame);
    Q_EMIT NotificationCenter::defaultCenter().N_WindowDidResize(this);
}

void OTWindow::screenParametersDidChange()
{
    if (!_screen || !QGuiApplication::screens().contains(_screen)) {
        chooseScreen();
    }
    _iconView->resizeView(OTIconView::Resizing::WhenChanged);
    if (isVisible()) {
        _resize->finish();
        _isMovedByUser = false;
        slideTo(centredFrame());
    }
}

// The screen that the user works on.
void OTWindow::chooseScreen()
{
    QScreen *const pointed = QGuiApplication::screenAt(QCursor::pos());
    takeScreen(pointed ? pointed : QGuiApplication::primaryScreen());
}

// Carried over by the user, the panel belongs to the other screen. A window manager that takes the
// panel into its frame lets it seem at the corner of the first screen for a moment.
void OTWindow::takeScreenOfFrame()
{
    QScreen *const screen = QGuiApplication::screenAt(geometry().center());
    if (_isMovedByUser && isVisible() && screen) {
        takeScreen(screen);
    }
}

void OTWindow::takeScreen(QScreen *screen)
{
    if (screen == _screen) {
        return;
    }
    if (_screen) {
        _screen->disconnect(this);
    }
    _screen = screen;
    if (!screen) {
        return;
    }
    connect(screen, &QScreen::availableGeometryChanged, this, &OTWindow::screenParametersDidChange);
    connect(screen, &QScreen::geometryChanged, this, &OTWindow::screenParametersDidChange);
    _iconView->resizeView(OTIconView::Resizing::WhenChanged);
}

QRectF OTWindow::currentFrame() const
{
    return upwards(QRectF(geometry()));
}

void OTWindow::setFrame(const QRectF &frame)
{
    const QRect wanted = upwards(frame).toRect();
    _place = wanted.topLeft();
    _frameChange->setFrame(wanted);
}

// The shape is sent again as well: i3 keeps one that was meant for the other place.
void OTWindow::insistOnPlace()
{
    const bool isElsewhere = geometry().topLeft() != _place;
    if (isShown() && !_isMovedByUser && isElsewhere) {
        clearMask();
        _frameChange->setFrame(QRect(_place, size()));
    }
}

QRectF OTWindow::visibleFrame() const
{
    return _screen ? upwards(QRectF(_screen->availableGeometry())) : QRectF();
}

QRectF OTWindow::centredFrame() const
{
    return PanelFrame::centredOn(visibleFrame(), QSizeF(size()));
}

bool OTWindow::hasBeenMoved() const
{
    return _isMovedByUser && isAwayFromCentre();
}

bool OTWindow::isAwayFromCentre() const
{
    return PanelFrame::isAwayFromCentre(currentFrame(), visibleFrame());
}

QSizeF OTWindow::maxIconViewSize() const
{
    return _largestGrid ? *_largestGrid : PanelFrame::maxIconViewSize(visibleFrame(), _margins);
}

double OTWindow::animationResizeTime(const QRectF &newFrame) const
{
    return PanelFrame::animationResizeTime(
        currentFrame(), newFrame, _screen ? QSizeF(_screen->size()) : QSizeF());
}

void OTWindow::slideTo(const QRectF &frame)
{
    const QRect end = upwards(frame).toRect();
    _place = end.topLeft();
    _animation->slideFrameToOver(end, slideTime, WindowAnimation::Fade::None);
}

void OTWindow::slideToCenter()
{
    _resize->finish();
    _movedFrame = currentFrame();
    if (isAwayFromCentre()) {
        slideTo(centredFrame());
    }
}

// A panel that has taken another size meanwhile, for another group for instance, was placed anew.
void OTWindow::slideBack()
{
    const QRectF frame = std::exchange(_movedFrame, {});
    if (!frame.isNull() && frame != currentFrame() && frame.size() == currentFrame().size()
        && !_resize->isUnderWay()) {
        slideTo(frame);
    }
}

void OTWindow::slideOnscreen()
{
    _resize->finish();
    const QRectF visible = visibleFrame();
    const QRectF frame = currentFrame();
    if (visible.contains(frame)) {
        return;
    }
    const QRectF inside = PanelFrame::constrained(frame, visible);
    if (!inside.isNull()) {
        _movedFrame = frame;
        slideTo(inside);
    }
}
