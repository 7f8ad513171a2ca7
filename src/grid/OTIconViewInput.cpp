// The part of the grid that keys, wheel, modifiers and pointer drive, and the selection.

#include "catalogue/OTAppManager.h"
#include "grid/GridAccessible.h"
#include "grid/GridHost.h"
#include "grid/OTIconView.h"
#include "grid/drawing/DisappearingCursor.h"
#include "grid/layout/GridGroups.h"
#include "grid/layout/GridKeys.h"
#include "grid/layout/SelectionSteps.h"
#include "grid/typing/FilterMatch.h"
#include "grid/typing/KeyCharacters.h"
#include "support/NotificationCenter.h"
#include "support/UserDefaults.h"

#include <QApplication>
#include <QCursor>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

constexpr double ResetInterval = 1.0; // seconds

constexpr qint64 ColorOrder = 2;

// A press that moves farther, on either axis, begins a drag.
constexpr qreal DragThreshold = 2.0;

} // namespace

bool OTIconView::keyPressed(const QKeyEvent &event)
{
    return performKeyEquivalent(event) || moveSelection(event.key()) || handleKeyDown(event);
}

bool OTIconView::performKeyEquivalent(const QKeyEvent &event)
{
    if (!event.modifiers().testFlag(Qt::ControlModifier)) {
        return event.key() == Qt::Key_Escape && handleCancelOperation();
    }
    switch (event.key()) {
    case Qt::Key_Equal:
        return changeLineCount(1);
    case Qt::Key_Minus:
        return changeLineCount(-1);
    case Qt::Key_Period:
        return handleCancelOperation();
    case Qt::Key_QuoteLeft:
    case Qt::Key_Dead_Grave:
        if (UserDefaults::standard().integerForKey(GridKeys::groupContentsSortOrder)
            == ColorOrder) {
            _pictures.setAreSpectrumsShown(!_pictures.areSpectrumsShown());
            update();
        }
        return true;
    default:
        return false;
    }
}

// Rows, or columns where bands are stacked; only a group in bunches has them to choose.
bool OTIconView::changeLineCount(int by)
{
    if (!GridGroups::isBunched(_groupShown)) {
        return false;
    }
    const bool areColumns = _layout.settings().groupOrientation == 1;
    const qint64 count = qint64(areColumns ? _layout.columnCount() : _layout.rowCount());
    const auto lines = quint64(std::max<qint64>(1, count + by));
    forceRowColCountForRows(areColumns ? 0 : lines, areColumns ? lines : 0);
    return true;
}

bool OTIconView::handleKeyDown(const QKeyEvent &event)
{
    const QString characters = KeyCharacters::of(event);
    const bool isReturn = KeyCharacters::isReturn(characters);
    // Before the key itself clears the filter.
    const AppList left = isReturn ? keyFilteredApps1D() : AppList();
    const bool isOneLeft = left.size() == 1;
    const AppRef selected = selectedApp();
    const bool isSelectionMeant =
        isReturn && _isSelectedByKeys && selected && !isAppKeyFilteredOut(selected);
    const QString before = _filter.string();
    const TypeFilter::Press press = _filter.press(
        characters, event.isAutoRepeat(), [&] { return isOneLeft; }, now());
    if (!press.isHandled) {
        // A filter whose time was up goes even with a key that means nothing.
        if (_filter.string() != before) {
            filterChanged();
        }
        return false;
    }
    filterChanged();
    if (press.launches) {
        _commands.launchApp(left.constFirst());
    } else if (isSelectionMeant && !isOneLeft) {
        _commands.launchApp(selected);
    }
    return true;
}

void OTIconView::textCommitted(const QString &text)
{
    if (_filter.type(text, now())) {
        filterChanged();
    }
}

bool OTIconView::handleCancelOperation()
{
    const bool isCancelled = _filter.cancelOperation();
    if (isCancelled) {
        filterChanged();
    }
    return isCancelled;
}

void OTIconView::filterChanged()
{
    update();
    sendFilterSubstringNotification();
}

void OTIconView::sendFilterSubstringNotification()
{
    Q_EMIT NotificationCenter::defaultCenter().N_FilterStringChanged(
        this, _filter.string(), ResetInterval);
}

bool OTIconView::isAppKeyFilteredOut(const AppRef &app) const
{
    return app && !matches(_filter.string(), *app);
}

AppList OTIconView::keyFilteredApps1D() const
{
    AppList apps = _appsShown.apps();
    apps.removeIf([this](const AppRef &app) { return isAppKeyFilteredOut(app); });
    return apps;
}

bool OTIconView::moveSelection(int key)
{
    if (key == Qt::Key_Menu) {
        openMenuAt(_selectedCoords);
        return selectedApp() != nullptr;
    }
    const std::optional<SelectionSteps::Step> step = SelectionSteps::stepOf(key);
    if (!step || isEmpty()) {
        return false;
    }
    const auto isLit = [this](quint64 row, quint64 column) {
        const AppRef app = appAtCoords({ row, column });
        return app && !isAppKeyFilteredOut(app);
    };
    const Coords next = SelectionSteps::moved(_selectedCoords, *step, _layout, isLit);
    if (!next.isEmpty()) {
        selectCoordsByKeys(next);
    }
    return true;
}

void OTIconView::selectCoords(const Coords &coords)
{
    if (std::exchange(_isSelectedByKeys, false)) {
        setNeedsDisplayForCoords(_selectedCoords);
    }
    if (coords == _selectedCoords) {
        return;
    }
    const Coords old = std::exchange(_selectedCoords, coords);
    if (old.row != coords.row || old.col != coords.col) {
        setNeedsDisplayForCoords({ old.row, old.col });
        setNeedsDisplayForCoords({ coords.row, coords.col });
        const AppRef app = appAtCoords(coords);
        Q_EMIT NotificationCenter::defaultCenter().N_SelectedAppChanged(
            this, app, app ? rectOfApp(app) : QRectF());
        GridAccessible::selectionChanged(this);
    }
    for (const QRectF &mark : _layout.marksThatDiffer(old, coords)) {
        update(onWidget(mark));
    }
}

void OTIconView::selectCoordsByKeys(const Coords &coords)
{
    selectCoords(coords);
    _isSelectedByKeys = selectedApp() != nullptr;
    setNeedsDisplayForCoords(coords);
}

void OTIconView::reset()
{
    _modifiers = {};
    resetFilterSubstring();
    selectCoords({});
    _press = {};
    _pictures.setAreSpectrumsShown(false);
    updateCursor();
}

void OTIconView::resignFirstResponder()
{
    reset();
    // Without its modifiers another group may be the one to show.
    resizeView(Resizing::WhenChanged);
}

void OTIconView::modifierKeysChanged(Qt::KeyboardModifiers modifiers)
{
    // While a menu is open the grid stays as it was when that was asked for.
    if (!isActiveWindow() || _menu.isVisible()) {
        return;
    }
    takeModifiers(_heldModifiers.counted(modifiers));
}

void OTIconView::takeModifiers(const ModifierKeys &modifiers)
{
    const ModifierKeys old = std::exchange(_modifiers, modifiers);
    const bool isAnotherGroup = old.option != _modifiers.option
        && (_groupToShow == IncludedGroup || _groupToShow == Included1DGroup);
    const bool isShiftReleased = old.shift && !_modifiers.shift;
    if (isAnotherGroup || isShiftReleased) {
        resizeView(Resizing::WhenChanged);
    } else if (old.function != _modifiers.function && _groupToShow != RunningGroup) {
        update();
    }
    updateCursor();
}

void OTIconView::wheelEvent(QWheelEvent *event)
{
    const bool isReversed = UserDefaults::standard().boolForKey(GridKeys::reverseScrollWheel);
    NotificationCenter &center = NotificationCenter::defaultCenter();
    switch (_wheel.turned(*event, isReversed, _filter, now())) {
    case GridWheel::Outcome::Nothing:
        break;
    case GridWheel::Outcome::FilterAnnounced:
        sendFilterSubstringNotification();
        break;
    case GridWheel::Outcome::FilterChanged:
        filterChanged();
        break;
    case GridWheel::Outcome::NextGroup:
        Q_EMIT center.N_SelectNextIconGroup(this);
        break;
    case GridWheel::Outcome::PreviousGroup:
        Q_EMIT center.N_SelectPrevIconGroup(this);
        break;
    }
}

void OTIconView::mousePressEvent(QMouseEvent *event)
{
    const QPointF point = inView(event->position());
    const bool isLeft = event->button() == Qt::LeftButton;
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
        Q_EMIT dragWanted(coordsOfPoint(*_press.mouseDownPoint));
    }
}

void OTIconView::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::RightButton) {
        _press.mouseDownPoint.reset();
        setNeedsDisplayForCoords(_selectedCoords);
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

void OTIconView::updateCursor()
{
    if (_modifiers.shift && _groupShown > RunningGroup) {
        setCursor(disappearingItemCursor());
    } else {
        unsetCursor();
    }
}
