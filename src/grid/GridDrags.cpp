#include "grid/GridDrags.h"

#include "catalogue/OTApp.h"
#include "catalogue/OTAppManager.h"
#include "grid/DragPicture.h"
#include "grid/GridHost.h"
#include "grid/OTIconView.h"
#include "grid/dragging/DropPlace.h"
#include "grid/dragging/DropStack.h"
#include "grid/layout/GridGroups.h"
#include "platform/Desktop.h"
#include "support/Geometry.h"
#include "support/NotificationCenter.h"

#include <QApplication>
#include <QCursor>
#include <QDrag>
#include <QPointer>

#include <algorithm>
#include <utility>

namespace {

bool isSameCell(const Coords &one, const Coords &other)
{
    return one.row == other.row && one.col == other.col;
}

QString nameOf(const QUrl &document)
{
    return document.isLocalFile() ? document.fileName() : document.toDisplayString();
}

} // namespace

GridDrags::GridDrags(OTIconView &view, OTAppManager &appManager, GridHost &host)
    : _view(view)
    , _appManager(appManager)
    , _host(host)
{ }

bool GridDrags::canAccept(const QMimeData &pasteboard)
{
    return OTDragPayload::isOn(pasteboard) || pasteboard.hasUrls();
}

QList<QUrl> GridDrags::URLsOnPasteboard(const QMimeData &pasteboard)
{
    QList<QUrl> urls = pasteboard.urls();
    urls.removeIf([](const QUrl &url) { return !url.isValid() || url.scheme().isEmpty(); });
    return urls;
}

bool GridDrags::canMoveInGroupShown() const
{
    return GridGroups::isFavourites(_view.groupShown());
}

bool GridDrags::isDragged(const AppRef &app) const
{
    return _dragMoveInProgress && app && _draggedApp && *app == *_draggedApp;
}

std::unique_ptr<QMimeData> GridDrags::pasteboardForCoords(const Coords &coords) const
{
    const AppRef app = _view.appAtCoords(coords);
    if (!app) {
        return nullptr;
    }
    const GridCell &cell = _view.gridLayout().cellAt(coords.row, coords.col);
    OTDragPayload payload;
    payload.setApp(app);
    payload.setGroup(quint64(_view.groupShown()));
    payload.setBunch(cell.bunch);
    payload.setIndex(cell.index);
    auto pasteboard = std::make_unique<QMimeData>();
    payload.writeTo(*pasteboard);
    return pasteboard;
}

void GridDrags::runMove(const Coords &start, const QPointF &pressedAt)
{
    std::unique_ptr<QMimeData> pasteboard = pasteboardForCoords(start);
    if (!pasteboard) {
        return;
    }
    const AppRef app = _view.appAtCoords(start);
    _dragMoveInProgress = _isOwnDrag = true;
    _hasLeftStart = false;
    _startCoords = start;
    _draggedApp = app;
    _view.update();

    // Qt deletes it when the drag is over.
    auto *const drag = new QDrag(&_view);
    drag->setMimeData(pasteboard.release());
    const auto padding = qreal(_view.gridLayout().cellPaddingForIconWidth(0));
    const QRectF icon = _view.rectOfCoords(start).adjusted(padding, padding, -padding, -padding);
    const bool isBlended = _appManager.desktop().compositing().isActive();
    const QImage image = _view.pictureOf(app);
    const DragPicture picture(image, image.width() / std::max(1.0, icon.width()),
        isBlended ? DragPicture::Display::Blended : DragPicture::Display::Plain);
    drag->setPixmap(picture.pixmap());
    drag->setHotSpot(QPointF(pressedAt.x() - icon.left(), icon.bottom() - pressedAt.y()).toPoint());
    const QPointer<GridDrags> self(this);
    drag->exec(Qt::MoveAction);
    if (!self) {
        return;
    }
    _isOwnDrag = false;
    const bool isGivenUp = _appManager.desktop().ownWindows().isPointerPressed();
    // A fast pointer may have left before the drag was there to be told.
    _hasLeftStart = _hasLeftStart || !_view.onScreen(start).contains(QCursor::pos());
    draggingReset();
    _view.pressEnded();
    if (!_hasLeftStart && !isGivenUp) {
        _view.commands().clicked(
            app, ModifierKeys::of(QGuiApplication::queryKeyboardModifiers()), QCursor::pos());
    }
}

// A dialog on the window has the keyboard and the pointer; what is dragged then is not for us.
bool GridDrags::hasUserFocus()
{
    if (_host.iconViewHasUserFocus()) {
        return true;
    }
    if (isOver()) {
        // The dialog keeps the front.
        _activeWhenDragBegan = true;
        draggingReset();
    }
    refuse();
    return false;
}

// However long the drag goes on.
void GridDrags::refuse()
{
    if (!std::exchange(_isRefused, true)) {
        QApplication::beep();
    }
}

Coords GridDrags::select(const QPointF &location)
{
    const QSizeF size = _view.viewSize();
    // The edges at the right and at the bottom are no longer part of the view.
    const QPointF inside(std::clamp(location.x(), 0.0, std::max(0.0, size.width() - 1)),
        std::clamp(location.y(), 1.0, std::max(1.0, size.height())));
    const Coords coords = _view.coordsOfPoint(inside);
    _hasLeftStart = _hasLeftStart || inside != location || !isSameCell(coords, _startCoords);
    _view.selectCoords(coords);
    return coords;
}

GridDrags::Operation GridDrags::draggingUpdated(const Info &info)
{
    if (!hasUserFocus() || !canAccept(info.pasteboard)) {
        return Operation::None;
    }
    const bool isMove = OTDragPayload::isOn(info.pasteboard);
    if (!isMove) {
        // Those that are held now count, whatever has been heard of them before.
        _view.takeModifiersOfDrag(info.modifiers);
    }
    if (!std::exchange(_isOver, true)) {
        draggingEntered(info);
    }
    select(info.location);
    // What may yet be a click keeps its icon under the pointer.
    if (_isSlideDue && (!_isOwnDrag || _hasLeftStart)) {
        _isSlideDue = false;
        _host.slideOnscreen();
    }
    if (isMove) {
        return isMarking() ? Operation::Move : Operation::None;
    }
    return _dragDropInProgress ? Operation::Generic : Operation::None;
}

void GridDrags::draggingEntered(const Info &info)
{
    _isRefused = false;
    _activeWhenDragBegan = _host.isProgramActive();
    if (!_activeWhenDragBegan) {
        _host.makeFrontProcess();
    }
    if (!OTDragPayload::isOn(info.pasteboard)) {
        const QList<QUrl> urls = URLsOnPasteboard(info.pasteboard);
        if (urls.isEmpty()) {
            refuse();
            return;
        }
        _dragDropInProgress = true;
        DropStack::sharedDropStack().push(urls.constFirst());
        findDroppableApps();
    } else if (!_dragMoveInProgress) {
        _draggedApp = draggedApp(info.pasteboard);
        if (!_draggedApp) {
            refuse();
            return;
        }
        _dragMoveInProgress = true;
        _view.update();
    }
    _isSlideDue = true;
}

void GridDrags::draggingAside()
{
    _hasLeftStart = true;
    _view.selectCoords({});
}

void GridDrags::draggingExited()
{
    draggingAside();
    draggingReset();
}

AppRef GridDrags::draggedApp(const QMimeData &pasteboard) const
{
    const auto payload = OTDragPayload::readFrom(pasteboard, _appManager.desktop());
    return payload ? _appManager.knownAppForPath(payload->app()->path()) : nullptr;
}

bool GridDrags::performDragOperation(const Info &info)
{
    // The cells may have been filled anew since the pointer moved, by a scan for instance.
    const Coords coords = select(info.location);
    const bool isDone = OTDragPayload::isOn(info.pasteboard) ? performMove(info.pasteboard, coords)
                                                             : performFileDrop(info.pasteboard);
    if (!isDone) {
        QApplication::beep();
    }
    draggingReset();
    return isDone;
}

bool GridDrags::performMove(const QMimeData &pasteboard, const Coords &coords)
{
    if (_isOwnDrag && !_hasLeftStart) {
        return true;
    }
    const AppRef app = draggedApp(pasteboard);
    std::optional<DropPlace> place = DropPlace::ofDrop(coords, _view.gridLayout());
    if (!place && _appManager.userApps1D().isEmpty()) {
        place = DropPlace { .isNewBunch = true };
    }
    if (!app || !place || !canMoveInGroupShown()) {
        return false;
    }
    _view.commands().moveApp(app, *place);
    return true;
}

bool GridDrags::performFileDrop(const QMimeData &pasteboard)
{
    const AppRef app = _view.selectedApp();
    if (!_dragDropInProgress || !app || !isDroppable(app)) {
        return false;
    }
    _view.commands().launchApp(app, &pasteboard);
    return true;
}

void GridDrags::draggingReset()
{
    _isOver = _isRefused = _isSlideDue = false;
    const bool wasMove = std::exchange(_dragMoveInProgress, false);
    const bool wasDrop = std::exchange(_dragDropInProgress, false);
    _startCoords = {};
    _draggedApp = nullptr;
    if (!wasMove && !wasDrop) {
        return;
    }
    _host.slideBack();
    _view.update();
    if (wasDrop) {
        DropStack::sharedDropStack().free();
        _droppableApps = {};
        setIsOffering(false);
        if (!_activeWhenDragBegan) {
            _host.reactivateLastApp();
        }
    }
}

bool GridDrags::giveUpFileDrop()
{
    if (!_dragDropInProgress) {
        return false;
    }
    draggingReset();
    _isOver = true;
    return true;
}

void GridDrags::cancel()
{
    if (_isOwnDrag) {
        QDrag::cancel();
    }
    draggingReset();
    stopOffering();
}

void GridDrags::offerDropStack()
{
    if (DropStack::sharedDropStack().URLs().isEmpty()) {
        return;
    }
    findDroppableApps();
    setIsOffering(true);
    sayIfNothingCanOpen();
}

std::optional<QList<QUrl>> GridDrags::takeOffered(const AppRef &by)
{
    if (!isDroppable(by)) {
        QApplication::beep();
        const QUrl top = DropStack::sharedDropStack().topObjectAsURL();
        const bool canOpen = indexOfApp(_appManager.allAppsThatCanAcceptURL(top), by) >= 0;
        const QString reason = canOpen
            ? OTIconView::tr("%1 is not meant for \"%2\". With Ctrl held it opens it all the same.")
            : OTIconView::tr("%1 cannot open \"%2\".");
        Q_EMIT NotificationCenter::defaultCenter().N_UserMessage(
            reason.arg(by->displayName(), nameOf(top)));
        return std::nullopt;
    }
    const QList<QUrl> urls = DropStack::sharedDropStack().URLs();
    stopOffering();
    return urls;
}

bool GridDrags::stopOffering()
{
    if (!_isOffering) {
        return false;
    }
    DropStack::sharedDropStack().free();
    _droppableApps = {};
    setIsOffering(false);
    return true;
}

void GridDrags::commandKeyChanged()
{
    if (isFileDrop()) {
        findDroppableApps();
    }
}

void GridDrags::findDroppableApps()
{
    const QUrl document = DropStack::sharedDropStack().topObjectAsURL();
    _droppableApps = PathSet(_view.isCommandHeld() ? _appManager.allAppsThatCanAcceptURL(document)
                                                   : _appManager.allAppsThatPreferURL(document));
    _view.update();
}

void GridDrags::setIsOffering(bool isOffering)
{
    _isOffering = isOffering;
    _view.update();
    Q_EMIT offerChanged();
}

QString GridDrags::offerText() const
{
    if (!_isOffering) {
        return {};
    }
    const DropStack &stack = DropStack::sharedDropStack();
    const QString name = nameOf(stack.topObjectAsURL());
    const qsizetype others = stack.URLs().size() - 1;
    return others == 0
        ? OTIconView::tr("Open \"%1\" with…").arg(name)
        : OTIconView::tr("Open \"%1\" and %2 more with…").arg(name, QString::number(others));
}

// Where nothing is lit no icon is covered by saying so.
void GridDrags::sayIfNothingCanOpen() const
{
    const QUrl top = DropStack::sharedDropStack().topObjectAsURL();
    if (!_appManager.allAppsThatPreferURL(top).isEmpty()) {
        return;
    }
    const QString hint = _appManager.allAppsThatCanAcceptURL(top).isEmpty()
        ? OTIconView::tr("No application can open \"%1\".")
        : OTIconView::tr("No application prefers \"%1\". Hold Ctrl to see those that can open it.");
    Q_EMIT NotificationCenter::defaultCenter().N_UserMessage(hint.arg(nameOf(top)));
}
