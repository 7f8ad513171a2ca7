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
// What a window manager may take to come to a place, in milliseconds; generous, for a busy machine.
constexpr qint64 longestAnswer = 3000;
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
    const QRectF centred = PanelFrame::centredOn(QRectF(_centre, QSizeF(0, 0)), size);
    const QRectF inside = PanelFrame::constrained(centred, visibleFrame());
    if (!inside.isEmpty() && inside != centred) {
        _centre = inside.center();
    }
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
    if (isSlow && frame != _frame) {
        _overlay->hide();
        const double seconds = animationResizeTime(frame);
        _frame = frame;
        _resize->start(upwards(frame).toRect(), seconds);
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

void OTWindow::setFrame(const QRectF &frame)
{
    const QRect wanted = upwards(frame).toRect();
    _frame = frame;
    if (isShown() && wanted.topLeft() != geometry().topLeft()) {
        _askedFor.append(wanted.topLeft());
        _sinceAsked.start();
    }
    _frameChange->setFrame(wanted);
}

// Its size is not taken: what Qt tells may be the answer to an earlier change.
void OTWindow::takePlaceOfWindow()
{
    QRectF frame = upwards(_frame);
    if (frame.toRect().topLeft() != geometry().topLeft()) {
        frame.moveTopLeft(geometry().topLeft());
        _frame = upwards(frame);
        _centre = _frame.center();
    }
}

// Whether the window manager has come to a place that the panel asked for. What it does later is
// its own will, or the user's.
bool OTWindow::isAnswer(const QPoint &corner)
{
    if (!_sinceAsked.isValid() || _sinceAsked.hasExpired(longestAnswer)) {
        _askedFor.clear();
    }
    const qsizetype answered = _askedFor.indexOf(corner);
    _askedFor.remove(0, answered + 1);
    return answered >= 0;
}

// The shape is sent again as well: i3 keeps one that was meant for the other place. With the size,
// which Qt may have by the answer to an earlier change.
void OTWindow::insistOnPlace()
{
    const QRect wanted = upwards(_frame).toRect();
    if (isShown() && !_isMovedByUser && geometry().topLeft() != wanted.topLeft()) {
        clearMask();
        _frameChange->setFrame(wanted);
    }
}

QRectF OTWindow::visibleFrame() const
{
    return _screen ? upwards(QRectF(_screen->availableGeometry())) : QRectF();
}

QRectF OTWindow::centredFrame() const
{
    return PanelFrame::centredOn(visibleFrame(), _frame.size());
}

bool OTWindow::hasBeenMoved() const
{
    return _isMovedByUser && isAwayFromCentre();
}

bool OTWindow::isAwayFromCentre() const
{
    return PanelFrame::isAwayFromCentre(_frame, visibleFrame());
}

QSizeF OTWindow::maxIconViewSize() const
{
    return _largestGrid ? *_largestGrid : PanelFrame::maxIconViewSize(visibleFrame(), _margins);
}

double OTWindow::animationResizeTime(const QRectF &newFrame) const
{
    return PanelFrame::animationResizeTime(
        _frame, newFrame, _screen ? QSizeF(_screen->size()) : QSizeF());
}

void OTWindow::slideTo(const QRectF &frame)
{
    _frame = frame;
    _centre = frame.center();
    _animation->slideFrameToOver(upwards(frame).toRect(), slideTime, WindowAnimation::Fade::None);
}

void OTWindow::slideToCenter()
{
    _resize->finish();
    _movedFrame = _frame;
    if (isAwayFromCentre()) {
        slideTo(centredFrame());
    }
}

// A panel that has taken another size meanwhile, for another group for instance, was placed anew.
void OTWindow::slideBack()
{
    const QRectF frame = std::exchange(_movedFrame, {});
    if (!frame.isNull() && frame != _frame && frame.size() == _frame.size()
        && !_resize->isUnderWay()) {
        slideTo(frame);
    }
}

void OTWindow::slideOnscreen()
{
    _resize->finish();
    const QRectF visible = visibleFrame();
    const QRectF frame = _frame;
    if (visible.contains(frame)) {
        return;
    }
    const QRectF inside = PanelFrame::constrained(frame, visible);
    if (!inside.isNull()) {
        _movedFrame = frame;
        slideTo(inside);
    }
}
