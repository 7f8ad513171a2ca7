// What is dragged over the panel. All of it takes drags for the grid, the group selector excepted:
// a drag that goes from one to the other has not left.

#include "grid/OTIconView.h"
#include "platform/Desktop.h"
#include "shell/panel/OTWindow.h"
#include "shell/selector/OTStatsControl.h"
#include "support/Geometry.h"

#include <QDragEnterEvent>
#include <QWindow>

bool OTWindow::isProgramActive() const
{
    return !_isNonActivating && _desktop.ownWindows().activeWindow() != nullptr;
}

void OTWindow::makeFrontProcess()
{
    if (!_isNonActivating && isShown()) {
        _desktop.ownWindows().activate(*windowHandle(), {});
    }
}

GridDrags::Info OTWindow::draggingInfo(const QDropEvent &event) const
{
    const QPointF inGrid = _iconView->mapFrom(this, event.position().toPoint());
    return { *event.mimeData(), Geometry::flipped(inGrid, _iconView->height()), event.modifiers() };
}

// What is done with files never takes them away from where they are; a drag that may only do that
// is for somewhere else.
Qt::DropAction OTWindow::actionOf(const QDropEvent &event)
{
    const Qt::DropAction forFiles =
        event.possibleActions().testFlag(Qt::CopyAction) ? Qt::CopyAction : Qt::LinkAction;
    const bool isForUs =
        OTDragPayload::isOn(*event.mimeData()) || event.possibleActions().testFlag(forFiles);
    const QPoint inSelector = _statsControl->mapFrom(this, event.position().toPoint());
    if (_statsControl->rect().contains(inSelector)) {
        _iconView->drags().draggingAside();
        _statsControl->testDrag(inSelector);
        return Qt::IgnoreAction;
    }
    _statsControl->dragEnded();
    if (!isForUs) {
        _iconView->drags().draggingAside();
        return Qt::IgnoreAction;
    }
    switch (_iconView->drags().draggingUpdated(draggingInfo(event))) {
    case GridDrags::Operation::Move:
        return Qt::MoveAction;
    case GridDrags::Operation::Generic:
        return forFiles;
    case GridDrags::Operation::None:
        break;
    }
    return Qt::IgnoreAction;
}

// Who says no when a drag arrives does not hear of its moves; so it says yes, to nothing for now.
void OTWindow::dragEnterEvent(QDragEnterEvent *event)
{
    if (isShown() && GridDrags::canAccept(*event->mimeData())) {
        if (!event->source()) {
            _desktop.dragWatch().watch();
        }
        event->setDropAction(actionOf(*event));
        event->accept();
    }
}

void OTWindow::dragMoveEvent(QDragMoveEvent *event)
{
    const Qt::DropAction action = isShown() ? actionOf(*event) : Qt::IgnoreAction;
    event->setDropAction(action);
    event->setAccepted(action != Qt::IgnoreAction);
}

void OTWindow::dragLeaveEvent(QDragLeaveEvent *)
{
    dragLeft();
}

void OTWindow::dragLeft()
{
    _desktop.dragWatch().stop();
    _statsControl->dragEnded();
    _iconView->drags().draggingExited();
}

void OTWindow::dropEvent(QDropEvent *event)
{
    const Qt::DropAction action = isShown() ? actionOf(*event) : Qt::IgnoreAction;
    if (action == Qt::IgnoreAction) {
        dragLeft();
        event->ignore();
        return;
    }
    _desktop.dragWatch().stop();
    const bool isDone = _iconView->drags().performDragOperation(draggingInfo(*event));
    event->setDropAction(isDone ? action : Qt::IgnoreAction);
    event->setAccepted(isDone);
}
