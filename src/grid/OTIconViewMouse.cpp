// The part of the grid that the pointer drives.

#include "catalogue/OTAppManager.h"
#include "grid/GridHost.h"
#include "grid/OTIconView.h"
#include "grid/drawing/DisappearingCursor.h"

#include <QApplication>
#include <QCursor>
#include <QMouseEvent>

#include <cmath>
#include <utility>

namespace {

// A press that moves farther, on either axis, begins a drag.
constexpr qreal DragThreshold = 2.0;

} // namespace

void OTIconView::mousePressEvent(QMouseEvent *event)
{
    const QPointF point = inView(event->position());
    const bool isLeft = event->button() == Qt::LeftButton;
    if (event->button() == Qt::MiddleButton) {
        _middlePressed = appAtPoint(point);
        event->setAccepted(_middlePressed != nullptr);
        return;
    }
    if (!isLeft && event->button() != Qt::RightButton) {
        event->ignore();
        return;
    }
    // A finger has not moved there before.
    selectCoords(coordsOfPoint(point));
    const AppRef app = appAtPoint(point);
    const bool opensMenu = app && (!isLeft || event->modifiers().testFlag(Qt::MetaModifier));
    // A menu that opens takes the release of its button.
    _press = { isLeft && !opensMenu ? std::optional(point) : std::nullopt, app };
    if (app) {
        setNeedsDisplayForApp(app);
    }
    if (isLeft && !app) {
        _host.mousePressed(event);
    }
    if (opensMenu) {
        _press.isMenu = _menu.open(event->globalPosition().toPoint());
    }
    event->setAccepted(isLeft || app);
}

void OTIconView::mouseMoveEvent(QMouseEvent *event)
{
    const QPointF point = inView(event->position());
    if (!_press.mouseDownPoint) {
        myMouseMoved(point);
        return;
    }
    const QPointF way = point - *_press.mouseDownPoint;
    const bool isFar = std::abs(way.x()) > DragThreshold || std::abs(way.y()) > DragThreshold;
    const bool canBeDragged =
        _groupShown != -1 && _groupShown != RunningGroup && _groupShown != MissingGroup;
    if (isFar && canBeDragged && !_press.isDragWanted && event->buttons().testFlag(Qt::LeftButton)
        && appAtPoint(*_press.mouseDownPoint)) {
        _press.isDragWanted = true;
        Q_EMIT dragWanted(coordsOfPoint(*_press.mouseDownPoint), *_press.mouseDownPoint);
    }
}

void OTIconView::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::RightButton) {
        _press.mouseDownPoint.reset();
        setNeedsDisplayForCoords(_selectedCoords);
        return;
    }
    if (event->button() == Qt::MiddleButton) {
        const AppRef pressedApp = std::exchange(_middlePressed, nullptr);
        if (pressedApp && pressedApp == appAtPoint(inView(event->position()))) {
            _commands.openNewWindow(pressedApp);
        }
        return;
    }
    if (event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    modifierKeysChanged(event->modifiers());
    // A click on the inactive window counts as well.
    _modifiers = _heldModifiers.counted(event->modifiers());
    // The cells may have been filled anew since.
    const Press press = std::exchange(_press, {});
    const AppRef pressed = press.mouseDownPoint ? press.app : nullptr;
    const QPointF point = inView(event->position());
    setNeedsDisplayForCoords(_selectedCoords);
    // However far the pointer was meanwhile: a drag takes the release for itself.
    if (pressed && pressed == appAtPoint(point)) {
        _commands.clicked(pressed, _modifiers, event->globalPosition().toPoint());
    } else {
        myMouseMoved(point);
        _host.mouseReleased(event);
    }
}

// While the menu is open the pointer is in it, and the application stays selected.
void OTIconView::leaveEvent(QEvent *)
{
    if (!_menu.exists()) {
        selectCoords({});
    }
}

void OTIconView::openMenuAt(const Coords &coords)
{
    selectKeepingKeys(coords);
    if (selectedApp()) {
        _menu.open(onScreen(coords).center());
    }
}

void OTIconView::menuIsOpenDidChange(bool isOpen)
{
    if (isOpen) {
        return;
    }
    _press.isMenu = false;
    setNeedsDisplayForCoords(_selectedCoords);
    // What was chosen comes first, and the press that closes a menu may open the next one.
    QMetaObject::invokeMethod(this, &OTIconView::selectUnderPointer, Qt::QueuedConnection);
}

// A menu had the pointer, which is elsewhere now, within the grid or not.
void OTIconView::selectUnderPointer()
{
    modifierKeysChanged(QGuiApplication::queryKeyboardModifiers());
    if (!_menu.isVisible() && !_isSelectedByKeys) {
        const QPoint pointer = QCursor::pos();
        const bool isOverGrid = QApplication::widgetAt(pointer) == this;
        selectCoords(isOverGrid ? coordsOfPoint(inView(mapFromGlobal(pointer))) : Coords());
    }
}

// The drag has taken the release of the button.
void OTIconView::pressEnded()
{
    _press = {};
    selectUnderPointer();
}

void OTIconView::updateCursor()
{
    if (_modifiers.shift && !_drags.isOver() && _groupShown > RunningGroup) {
        setCursor(disappearingItemCursor());
    } else {
        unsetCursor();
    }
}
