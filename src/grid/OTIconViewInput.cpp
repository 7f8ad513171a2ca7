// The part of the grid that keys, wheel and modifiers drive, and the selection.

#include "catalogue/OTApp.h"
#include "catalogue/OTAppManager.h"
#include "grid/GridAccessible.h"
#include "grid/OTIconView.h"
#include "grid/dragging/DropPlace.h"
#include "grid/layout/GridGroups.h"
#include "grid/layout/GridInput.h"
#include "grid/layout/GridKeys.h"
#include "grid/layout/SelectionSteps.h"
#include "grid/typing/FilterMatch.h"
#include "grid/typing/KeyCharacters.h"
#include "support/NotificationCenter.h"
#include "support/UserDefaults.h"

#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QWheelEvent>

#include <algorithm>
#include <utility>

namespace {

// In seconds; a composition has no time to keep.
constexpr double ResetInterval = 1.0;
constexpr double CompositionInterval = 3600;

bool hasColor(const OTApp &app, const QList<ColorNames::Name> &names)
{
    const SortedColors &colors = app.sortedColors();
    return !colors.isEmpty()
        && names.contains(
            ColorNames::nameOf(colors.constFirst(), ColorNames::kindOf(app.colorSortValue())));
}

} // namespace

bool OTIconView::keyPressed(const QKeyEvent &event)
{
    return performKeyEquivalent(event) || moveFavourite(event) || moveSelection(event.key())
        || handleKeyDown(event);
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
    case Qt::Key_Z:
        event.modifiers().testFlag(Qt::ShiftModifier) ? _commands.redo() : _commands.undo();
        return true;
    case Qt::Key_QuoteLeft:
    case Qt::Key_Dead_Grave:
        if (GridInput::isInColorOrder()) {
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
    if (isReturn && !_preedit.isEmpty()) {
        // It ends the composition, and is the input method's.
        return true;
    }
    // Before the key itself clears the filter.
    const AppRef meant = isReturn ? appForReturn() : nullptr;
    const auto action = meant ? foundAction(meant) : std::nullopt;
    const AppRef selected = selectedApp();
    const bool isSelectionMeant =
        isReturn && _isSelectedByKeys && selected && !isAppKeyFilteredOut(selected);
    const QString before = _filter.string();
    _filter.setTakesPunctuation(_finder.isOn());
    const TypeFilter::Press press = _filter.press(
        characters, event.isAutoRepeat(), [&] { return meant != nullptr; }, now());
    if (!press.isHandled) {
        // A filter whose time was up goes even with a key that means nothing.
        if (_filter.string() != before) {
            filterChanged();
        }
        return false;
    }
    filterChanged();
    if (press.launches && action) {
        _commands.performAction(meant, action->id);
    } else if (press.launches) {
        _commands.launchApp(meant);
    } else if (isSelectionMeant) {
        _commands.launchApp(selected);
    }
    return true;
}

// The only one left. Where the best is known it need not be the only one, and another one that was
// selected by keys takes its place.
AppRef OTIconView::appForReturn() const
{
    if (_finder.isOn() && !_filter.isEmpty()) {
        _finder.bestAtLast(_filter.string());
        if (const AppRef app = appOfReturn()) {
            return app;
        }
    }
    const AppList left = keyFilteredApps1D();
    return left.size() == 1 ? left.constFirst() : nullptr;
}

AppRef OTIconView::appOfReturn() const
{
    if (!_finder.isOn() || _filter.isEmpty()) {
        return nullptr;
    }
    const AppRef selected = selectedApp();
    const bool isSelectionMeant = _isSelectedByKeys && selected && !isAppKeyFilteredOut(selected);
    return isSelectionMeant ? selected : _finder.best(_filter.string());
}

void OTIconView::inputMethodEvent(QInputMethodEvent *event)
{
    if (_preedit.isEmpty()) {
        _doesPreeditGoOn = _filter.isFresh(now());
    } else if (_doesPreeditGoOn) {
        // However long it took to compose.
        _filter.keepFresh(now());
    }
    const QString before = std::exchange(_preedit, event->preeditString());
    const bool isCommit = !event->commitString().isEmpty();
    const bool isTaken = isCommit && textCommitted(event->commitString());
    _doesPreeditGoOn = _doesPreeditGoOn || isCommit;
    if (!isTaken && _preedit != before) {
        sendFilterSubstringNotification();
    }
    event->accept();
}

bool OTIconView::textCommitted(const QString &text)
{
    _filter.setTakesPunctuation(_finder.isOn());
    const bool isTaken = _filter.type(text, now());
    if (isTaken) {
        filterChanged();
    }
    return isTaken;
}

void OTIconView::clearFilter()
{
    if (_filter.cancelOperation()) {
        filterChanged();
    }
}

bool OTIconView::handleCancelOperation()
{
    // Not every source has the keyboard while its files are dragged. A panel that went would leave
    // them over what lies below.
    if (_drags.giveUpFileDrop()) {
        return true;
    }
    if (_filter.cancelOperation()) {
        filterChanged();
        return true;
    }
    return _drags.stopOffering();
}

void OTIconView::filterChanged()
{
    selectBest();
    findColorsOfFilter();
    update();
    sendFilterSubstringNotification();
}

// A selection that the user has moved since stays where it is.
void OTIconView::findingDidChange()
{
    if (_filter.isEmpty()) {
        return;
    }
    const AppRef before = _bestApp;
    const bool isSelectionOurs = !before || !selectedApp() || selectedApp() == before;
    if (isSelectionOurs && !_drags.isDragMoveInProgress()) {
        selectBest();
    }
    findColorsOfFilter();
    update();
    // What has faded does not come back for nothing.
    if (_bestApp != before || _filter.isFresh(now())) {
        sendFilterSubstringNotification();
    }
}

void OTIconView::selectBest()
{
    const AppRef former = std::exchange(_bestApp, _finder.best(_filter.string()));
    if (_bestApp) {
        selectCoordsByKeys(coordsOfApp(_bestApp));
    } else if (former && _isSelectedByKeys && selectedApp() == former) {
        selectCoords({});
    }
}

void OTIconView::findColorsOfFilter()
{
    _filterColors = GridInput::isInColorOrder() ? ColorNames::named(_filter.string())
                                                : QList<ColorNames::Name>();
    const AppList apps = _filterColors.isEmpty() ? AppList() : _appsShown.apps();
    if (std::any_of(
            apps.cbegin(), apps.cend(), [this](const AppRef &app) { return isFound(app); })) {
        _filterColors.clear();
    }
}

// With what is being composed, as if it were typed already.
void OTIconView::sendFilterSubstringNotification()
{
    const QString typed = _preedit.isEmpty() || _doesPreeditGoOn ? _filter.string() : QString();
    Q_EMIT NotificationCenter::defaultCenter().N_FilterStringChanged(
        this, typed + _preedit, _preedit.isEmpty() ? ResetInterval : CompositionInterval);
}

bool OTIconView::isAppKeyFilteredOut(const AppRef &app) const
{
    if (!app) {
        return false;
    }
    const bool isLeft = isFound(app) || (!_filterColors.isEmpty() && hasColor(*app, _filterColors));
    return !isLeft || (_hueWindow && !_hueWindow->holds(app->colorSortValue()));
}

// By names, or by all that is known of it.
bool OTIconView::isFound(const AppRef &app) const
{
    return _finder.isOn() ? _finder.isFound(_filter.string(), app)
                          : matches(_filter.string(), *app);
}

std::optional<ApplicationActions::Action> OTIconView::foundAction(const AppRef &app) const
{
    return _finder.actionOf(_filter.string(), app);
}

void OTIconView::setHueWindow(const std::optional<HueWindow> &window)
{
    if (window == _hueWindow) {
        return;
    }
    const QList<Coords> cells = occupiedCells();
    const auto dimmed = [&] {
        QList<bool> result;
        for (const Coords &cell : cells) {
            result.append(isAppKeyFilteredOut(appAtCoords(cell)));
        }
        return result;
    };
    const QList<bool> before = dimmed();
    _hueWindow = window;
    const QList<bool> after = dimmed();
    for (qsizetype i = 0; i < cells.size(); ++i) {
        if (before[i] != after[i]) {
            setNeedsDisplayForCoords(cells[i]);
        }
    }
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

// One place farther, as often as the key is pressed: the selection goes with the icon.
bool OTIconView::moveFavourite(const QKeyEvent &event)
{
    const std::optional<SelectionSteps::Step> step = SelectionSteps::stepOf(event.key());
    const AppRef app = selectedApp();
    if (event.modifiers() != Qt::ShiftModifier || !GridGroups::isFavourites(_groupShown) || !app
        || !step) {
        return false;
    }
    const std::optional<DropPlace> place = DropPlace::farther(_selectedCoords, *step, _layout);
    if (place) {
        selectCoordsByKeys(_selectedCoords);
        _commands.moveApp(app, *place);
        GridAccessible::placeChanged(this, app);
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
    if (_drags.isMarking()) {
        for (const QRectF &mark : _layout.marksThatDiffer(old, coords)) {
            update(onWidget(mark));
        }
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
    _drags.cancel();
    resetInput();
}

void OTIconView::resetInput()
{
    _modifiers = {};
    resetFilterSubstring();
    _preedit.clear();
    _bestApp = nullptr;
    _filterColors.clear();
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
    if (!isActiveWindow() || _menu.isVisible() || _drags.isDragMoveInProgress()) {
        return;
    }
    if (_drags.isOver()) {
        takeModifiersOfDrag(modifiers);
    } else {
        takeModifiers(_heldModifiers.counted(modifiers));
    }
}

void OTIconView::takeModifiers(const ModifierKeys &modifiers)
{
    const ModifierKeys old = std::exchange(_modifiers, modifiers);
    const bool isAnotherGroup = old.option != _modifiers.option
        && (_groupToShow == IncludedGroup || _groupToShow == Included1DGroup);
    const bool isShiftReleased = old.shift && !_modifiers.shift;
    if (old.command != _modifiers.command) {
        _drags.commandKeyChanged();
    }
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
