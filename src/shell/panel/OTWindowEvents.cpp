// What happens to the panel: keys, presses on its background, focus.

#include "grid/OTIconView.h"
#include "grid/typing/ModifierKeys.h"
#include "platform/Desktop.h"
#include "shell/base/OTBkgndView.h"
#include "shell/panel/FrameChange.h"
#include "shell/panel/OTWindow.h"
#include "shell/panel/PanelButton.h"
#include "shell/panel/PanelResize.h"
#include "shell/panel/WindowAnimation.h"
#include "shell/selector/HueBar.h"
#include "shell/selector/OTIconOverlayView.h"
#include "shell/selector/OTStatsControl.h"

#include <QApplication>
#include <QCloseEvent>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWindow>

namespace {

// An event of one of two equal modifier keys knows nothing of the other.
Qt::KeyboardModifiers heldModifiers(const QKeyEvent &event)
{
    return ModifierKeys::isModifier(event.key()) ? QGuiApplication::queryKeyboardModifiers()
                                                 : event.modifiers();
}

} // namespace

void OTWindow::keyPressEvent(QKeyEvent *event)
{
    _iconView->modifierKeysChanged(heldModifiers(*event));
    if (isShown() && event->key() == Qt::Key_Comma && event->modifiers() == Qt::ControlModifier) {
        Q_EMIT preferencesWanted();
        return;
    }
    // What comes while it fades out was not meant for it any more.
    event->setAccepted(isShown()
        && (_hueBar->handleKeyDown(*event) || _statsControl->handleKeyDown(*event)
            || _iconView->keyPressed(*event)));
    // The menu of no icon is the panel's.
    if (isShown() && !event->isAccepted() && event->key() == Qt::Key_Menu) {
        _prefsButton->click();
        event->accept();
    }
}

void OTWindow::keyReleaseEvent(QKeyEvent *event)
{
    _iconView->modifierKeysChanged(heldModifiers(*event));
    event->ignore();
}

void OTWindow::inputMethodEvent(QInputMethodEvent *event)
{
    if (isShown()) {
        // Some input methods send empty ones along with keys that are not theirs.
        if (!event->commitString().isEmpty() || !event->preeditString().isEmpty()) {
            _hueBar->leave();
        }
        QCoreApplication::sendEvent(_iconView, event);
    }
    event->accept();
}

// Window managers have ways of their own to let the user drag a window, such as a key with the
// mouse. Without a button pressed it is the window manager that moves it: i3 and awesome put a new
// window elsewhere than it asks, and obey when asked again.
void OTWindow::moveEvent(QMoveEvent *event)
{
    if (_animation->isSliding() || _resize->isUnderWay()) {
        return;
    }
    if (event->spontaneous() && isShown() && !(_drag && _drag->isMoving)) {
        if (isAnswer(geometry().topLeft())) {
            return;
        }
        if (_desktop.ownWindows().isPointerPressed()) {
            _isMovedByUser = true;
        } else if (!_isMovedByUser && _placingsLeft > 0) {
            --_placingsLeft;
            QMetaObject::invokeMethod(this, &OTWindow::insistOnPlace, Qt::QueuedConnection);
            return;
        }
    }
    takePlaceOfWindow();
}

void OTWindow::resizeEvent(QResizeEvent *)
{
    _background->resize(size());
    _frameChange->updateShape();
}

void OTWindow::hideEvent(QHideEvent *event)
{
    _drag.reset();
    _resize->finish();
    _iconView->resignFirstResponder();
    QWidget::hideEvent(event);
}

// Another program asks; whether and how it is hidden is not for Qt to decide.
void OTWindow::closeEvent(QCloseEvent *event)
{
    event->ignore();
    Q_EMIT closeWanted();
}

// Keys that are released elsewhere are not heard of. While another program has grabbed a key Qt
// takes the panel for inactive, which it is not. Selection and filter stay: a panel that the user
// has moved waits beside the other window, and may be used again.
void OTWindow::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::ActivationChange) {
        const bool isInFront =
            windowHandle() && _desktop.ownWindows().activeWindow() == windowHandle();
        if (isActiveWindow()) {
            _iconView->ignoreHeldModifiers(QGuiApplication::queryKeyboardModifiers());
        } else if (!isInFront) {
            _iconView->forgetModifiers();
            _hueBar->leave();
        }
        _iconView->update();
    }
    QWidget::changeEvent(event);
}

void OTWindow::mousePressed(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton) {
        // The user takes it where it is.
        _animation->finishSlide();
        _resize->finish();
        _drag = Drag { .pointer = event->globalPosition().toPoint(), .panel = pos() };
    }
}

void OTWindow::mouseReleased(QMouseEvent *)
{
    _drag.reset();
}

void OTWindow::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::RightButton) {
        Q_EMIT menuWanted(event->globalPosition().toPoint());
    } else {
        mousePressed(event);
    }
}

void OTWindow::mouseMoveEvent(QMouseEvent *event)
{
    if (_drag && event->buttons().testFlag(Qt::LeftButton)) {
        dragTo(event->globalPosition().toPoint());
    }
}

void OTWindow::mouseReleaseEvent(QMouseEvent *event)
{
    mouseReleased(event);
}

bool OTWindow::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == _background && event->type() == QEvent::Resize) {
        layOutSubviews();
    }
    // Its counts take more room, or less.
    if (watched == _statsControl && event->type() == QEvent::Resize) {
        layOutHueBar();
    }
    // A press on the grid keeps the mouse there.
    if (watched == _iconView && event->type() == QEvent::MouseMove && _drag) {
        mouseMoveEvent(static_cast<QMouseEvent *>(event));
    }
    return QWidget::eventFilter(watched, event);
}

// Moved by ourselves, not by the window manager: those who end a move keep the pointer's release
// for themselves, and some keep windows from where the user wants them. Only where a window may
// not place itself does the display have to do it.
void OTWindow::dragTo(const QPoint &pointer)
{
    const QPoint way = pointer - _drag->pointer;
    if (!_drag->isMoving && way.manhattanLength() < QApplication::startDragDistance()) {
        return;
    }
    _drag->isMoving = true;
    if (QGuiApplication::platformName().startsWith(QLatin1String("wayland"))) {
        _drag.reset();
        windowHandle()->startSystemMove();
        return;
    }
    _isMovedByUser = true;
    move(_drag->panel + way);
}
