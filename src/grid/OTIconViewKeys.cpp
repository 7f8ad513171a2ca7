// The part of the grid that keys, wheel and modifiers drive, and the selection.

#include "catalogue/OTApp.h"
#include "catalogue/OTAppManager.h"
#include "grid/FilterMatch.h"
#include "grid/GridAccessible.h"
#include "grid/GridKeys.h"
#include "grid/KeyCharacters.h"
#include "grid/OTIconView.h"
#include "grid/SelectionSteps.h"
#include "support/NotificationCenter.h"
#include "support/UserDefaults.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QWheelEvent>

#include <algorithm>
#include <utility>

namespace {

constexpr double ResetInterval = 1.0; // seconds

// What a wheel reports for a line, down and across.
constexpr double VerticalUnit = 100;
constexpr double HorizontalUnit = 10;

constexpr qint64 ColorOrder = 2;

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
            _showIconSpectrums = !_showIconSpectrums;
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
    const bool isBunched = _groupShown == IncludedGroup || _groupShown == ExcludedGroup
        || _groupShown == AllGroup || _groupShown == UserGroup;
    if (!isBunched) {
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
    bool isOneLeft = false;
    AppRef left;
    const auto findOneLeft = [&] {
        const AppList apps = keyFilteredApps1D();
        isOneLeft = apps.size() == 1;
        left = isOneLeft ? apps.constFirst() : nullptr;
        return isOneLeft;
    };
    const bool isReturn = KeyCharacters::isReturn(characters);
    const AppRef selected = selectedApp();
    // The filter may be cleared by the key itself.
    const bool isSelectionMeant =
        isReturn && _isSelectedByKeys && selected && !isAppKeyFilteredOut(selected);
    const QString before = _filter.string();
    const TypeFilter::Press press =
        _filter.press(characters, event.isAutoRepeat(), findOneLeft, now());
    if (!press.isHandled) {
        // A filter whose time was up goes even with a key that means nothing.
        if (_filter.string() != before) {
            filterChanged();
        }
        return false;
    }
    filterChanged();
    if (press.launches && left) {
        launchApp(left);
    } else if (isSelectionMeant && !isOneLeft) {
        launchApp(selected);
    }
    return true;
}

bool OTIconView::handleKeyUp(const QKeyEvent &)
{
    return false;
}

void OTIconView::textCommitted(const QString &text)
{
    const QString before = _filter.string();
    const auto launchesNothing = [] { return false; };
    bool isTyped = false;
    for (const char32_t character : text.toStdU32String()) {
        const QString typed = QString::fromUcs4(&character, 1);
        isTyped = _filter.press(typed, false, launchesNothing, now()).isHandled || isTyped;
    }
    if (isTyped || _filter.string() != before) {
        filterChanged();
    }
}

bool OTIconView::handleCancelOperation()
{
    if (_filter.isEmpty()) {
        return false;
    }
    resetFilterSubstring();
    filterChanged();
    return true;
}

void OTIconView::resetFilterSubstring()
{
    _filter.reset();
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
    if (!step || _cellOfPath.isEmpty()) {
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
    const auto redisplay = [this](quint64 before, quint64 now, const std::vector<QRectF> &rects) {
        for (const quint64 index : { before, now }) {
            if (before != now && index < rects.size()) {
                update(onWidget(rects[index]));
            }
        }
    };
    redisplay(old.bunch, coords.bunch, _layout.bunchRects());
    redisplay(old.spacer, coords.spacer, _layout.bunchSpacingRects());
    redisplay(old.margin, coords.margin, _layout.marginRects());
}

void OTIconView::selectCoordsByKeys(const Coords &coords)
{
    selectCoords(coords);
    _isSelectedByKeys = selectedApp() != nullptr;
    setNeedsDisplayForCoords(coords);
}

void OTIconView::selectKeepingKeys(const Coords &coords)
{
    _isSelectedByKeys ? selectCoordsByKeys(coords) : selectCoords(coords);
}

void OTIconView::reset()
{
    _modifiers = {};
    resetFilterSubstring();
    selectCoords({});
    _mouseDownPoint.reset();
    _pressedApp.reset();
    _isDragWanted = false;
    _isMenuPressed = false;
    _showIconSpectrums = false;
    updateCursor();
}

void OTIconView::resignFirstResponder()
{
    reset();
    // Without its modifiers another group may be the one to show.
    resizeView(Resizing::WhenChanged);
}

void OTIconView::ignoreHeldModifiers(Qt::KeyboardModifiers modifiers)
{
    _ignoredModifiers = modifiers;
}

void OTIconView::modifierKeysChanged(Qt::KeyboardModifiers modifiers)
{
    // While a menu is open the grid stays as it was when that was asked for.
    if (!isActiveWindow() || (_menu && _menu->isVisible())) {
        return;
    }
    _ignoredModifiers &= modifiers;
    takeModifiers(ModifierKeys::of(modifiers & ~_ignoredModifiers));
}

void OTIconView::forgetModifiers()
{
    takeModifiers({});
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
    // On X Qt turns the wheel on its side while Alt is held, which here means something
    // else.
    const bool isTurned = event->modifiers().testFlag(Qt::AltModifier)
        && QGuiApplication::platformName() == QLatin1String("xcb");
    const QPoint delta = isTurned ? event->angleDelta().transposed() : event->angleDelta();
    NotificationCenter &center = NotificationCenter::defaultCenter();
    switch (_wheel.scroll(delta.x() / HorizontalUnit, delta.y() / VerticalUnit,
        double(event->timestamp()) / 1000, isReversed, _filter, now())) {
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
