// What is dragged over the grid: icons that are filed into the favourites, and files or addresses
// that are opened with the application they are dropped on. Files that wait on the drop stack are
// offered likewise, to a click instead of a drop.
//
// What a drag is, is told by what it carries and never by where it comes from: the icon may be
// another panel's. A drag that was refused may come to be accepted as it moves on, for instance in
// another group.

#pragma once

#include "catalogue/AppList.h"
#include "grid/dragging/OTDragPayload.h"
#include "grid/layout/Coords.h"

#include <QList>
#include <QMimeData>
#include <QObject>
#include <QPointF>
#include <QUrl>

#include <memory>
#include <optional>

class GridHost;
class OTAppManager;
class OTIconView;

class GridDrags final : public QObject
{
    Q_OBJECT

public:
    // What becomes of a drag if it is dropped now.
    enum class Operation { None, Generic, Move };

    struct Info
    {
        const QMimeData &pasteboard;
        // In the view, y growing upwards; beside the view it counts as on its nearest edge.
        QPointF location;
        Qt::KeyboardModifiers modifiers;
    };

    // All of them must outlive the drags.
    GridDrags(OTIconView &view, OTAppManager &appManager, GridHost &host);

    // Whether a drag carries what the grid knows: an icon, files or addresses.
    static bool canAccept(const QMimeData &pasteboard);
    // Of what a drag carries: addresses that are none are left out.
    static QList<QUrl> URLsOnPasteboard(const QMimeData &pasteboard);

    // What the drag of the icon in a cell carries; null where there is none.
    std::unique_ptr<QMimeData> pasteboardForCoords(const Coords &coords) const;
    // Drags the icon in a cell, pressed at a point of the view, until it is dropped or the drag is
    // given up. Nothing where the cell is empty. A drag that has not left the cell is a click.
    void runMove(const Coords &start, const QPointF &pressedAt);

    // A drag moves over the view, or over what counts as part of it; the first call is its
    // entrance.
    Operation draggingUpdated(const Info &info);
    // It is over the window that the view stands in, but elsewhere.
    void draggingAside();
    void draggingExited();
    // Does what the drag is for, and ends it. False when nothing came of it.
    bool performDragOperation(const Info &info);
    // Ends a drag that is over the view.
    void draggingReset();
    // Ends the drag of files that is over the view, and takes no notice of it until it leaves: only
    // its source can end it altogether. False when there is none.
    bool giveUpFileDrop();
    // Ends that and whatever else is under way: the window goes.
    void cancel();

    // Offers what waits on the drop stack to the applications that can take it; also when the
    // stack has changed. Nothing while it is empty.
    void offerDropStack();
    // Whether files are offered to a click.
    bool isOffering() const { return _isOffering; }
    // What is offered, for people; empty while nothing is.
    QString offerText() const;
    // What a click on the application opens in it; it is offered no more. Nothing, and a beep, for
    // an application that cannot take it.
    std::optional<QList<QUrl>> takeOffered(const AppRef &by);
    // Empties the drop stack. False when nothing was offered.
    bool stopOffering();

    // The key that widens the choice of applications for a file was pressed or released.
    void commandKeyChanged();

    // Whether the user drags an icon of the view, wherever it is.
    bool isOwnDrag() const { return _isOwnDrag; }
    bool isDragMoveInProgress() const { return _dragMoveInProgress; }
    // Whether applications show if they can take what is dragged or offered.
    bool isFileDrop() const { return _dragDropInProgress || _isOffering; }
    bool isOver() const { return _isOver; }
    bool canMoveInGroupShown() const;
    // Whether a drop here would arrange the favourites anew, so that the place is marked.
    bool isMarking() const { return _dragMoveInProgress && canMoveInGroupShown(); }
    bool isDragged(const AppRef &app) const;
    bool isDroppable(const AppRef &app) const { return _droppableApps.contains(app); }

Q_SIGNALS:
    void offerChanged();

private:
    void draggingEntered(const Info &info);
    bool performMove(const QMimeData &pasteboard, const Coords &coords);
    bool performFileDrop(const QMimeData &pasteboard);
    // The catalogue's own entry for what a drag carries; null when it knows none.
    AppRef draggedApp(const QMimeData &pasteboard) const;
    bool hasUserFocus();
    void refuse();
    Coords select(const QPointF &location);
    void findDroppableApps();
    void sayIfNothingCanOpen() const;
    void setIsOffering(bool isOffering);

    OTIconView &_view;
    OTAppManager &_appManager;
    GridHost &_host;

    bool _isOver = false;
    bool _dragMoveInProgress = false;
    bool _dragDropInProgress = false;
    bool _activeWhenDragBegan = false;
    // It cannot be taken, and the user has been told.
    bool _isRefused = false;
    bool _isOffering = false;
    // The window is to come where all of it can be seen.
    bool _isSlideDue = false;
    // Of a drag that runMove() runs.
    bool _isOwnDrag = false;
    bool _hasLeftStart = false;
    Coords _startCoords;
    AppRef _draggedApp;
    PathSet _droppableApps;
};
