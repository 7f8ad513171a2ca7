#include "grid/OTIconView.h"

#include "catalogue/OTApp.h"
#include "catalogue/OTAppManager.h"
#include "grid/GridAccessible.h"
#include "grid/GridHost.h"
#include "grid/drawing/CellLook.h"
#include "grid/layout/GridGroups.h"
#include "grid/layout/GridInput.h"
#include "grid/layout/GridKeys.h"
#include "platform/Desktop.h"
#include "support/Geometry.h"
#include "support/NotificationCenter.h"
#include "support/UserDefaults.h"

#include <QPaintEvent>
#include <QPainter>

#include <cmath>
#include <tuple>

namespace {

// The panel takes another size when one of these changes.
auto figures(const GridLayout &layout)
{
    return std::tuple(
        layout.columnCount(), layout.rowCount(), layout.bunchCount(), layout.cellWidth());
}

} // namespace

OTIconView::OTIconView(OTAppManager &appManager, GridHost &host, QWidget *parent)
    : QWidget(parent)
    , _appManager(appManager)
    , _host(host)
    , _pictures(appManager.desktop().icons())
    , _iconRepaint(*this)
    , _finder(appManager)
    , _starts(*this, appManager.desktop())
    , _commands(*this, appManager, host)
    , _menu(*this, _commands, appManager)
    , _drags(*this, appManager, host)
{
    _layout.setSettings(GridInput::settings());
    connect(
        &UserDefaults::standard(), &UserDefaults::changed, this, &OTIconView::preferenceDidChange);
    connect(&appManager, &OTAppManager::didChange, this, &OTIconView::listDidChange);
    connect(&appManager.newApplications(), &NewApplications::changed, this,
        &OTIconView::newApplicationsDidChange);
    connect(&_pictures, &CellPictures::pictureChanged, this, &OTIconView::appIconDidChange);
    connect(&_pictures, &CellPictures::picturesLost, this, [this] { update(); });
    connect(&_finder, &AppFinder::findsOthers, this, &OTIconView::findingDidChange);
    connect(&_starts, &StartMarks::changed, this,
        [this](const QString &path) { setNeedsDisplayForApp(_appManager.knownAppForPath(path)); });
    connect(&_menu, &AppMenu::isOpenChanged, this, &OTIconView::menuIsOpenDidChange);
    const NotificationCenter &center = NotificationCenter::defaultCenter();
    connect(&center, &NotificationCenter::N_AppIconChanged, this, &OTIconView::appIconDidChange);
    connect(&center, &NotificationCenter::N_ShowProgressStep, this, &OTIconView::showProgressStep);
    connect(
        &center, &NotificationCenter::N_EventFlagsChanged, this, &OTIconView::modifierKeysChanged);
    _sizeRest.setSingleShot(true);
    _sizeRest.setInterval(SizeRest);
    connect(&_sizeRest, &QTimer::timeout, this, [this] {
        if (std::exchange(_areIconsDue, false)) {
            _pictures.setHurried(false);
            update();
            loadIconsAtSize();
        }
    });
    // The window hands keys on.
    setFocusPolicy(Qt::NoFocus);
    setMouseTracking(true);
    _clock.start();
    _excludedPaths = PathSet(appManager.excludedApps1D());
    _runningPaths = PathSet(appManager.runningApps());
    GridAccessible::install();
    updateColors();
}

void OTIconView::registerDefaults()
{
    GridInput::registerDefaults();
    GridColors::registerDefaults();
    AppFinder::registerDefaults();
    UserDefaults::standard().registerState({ { GridKeys::groupShownWhenWindowClosed, -1 } });
    UserDefaults::standard().registerDefaults({ { GridKeys::reverseScrollWheel, false } });
}

void OTIconView::setGroupToShow(int group)
{
    if (_groupShown == mappedGroup(group)) {
        return;
    }
    _groupToShow = group;
    UserDefaults::standard().setObject(GridKeys::groupShownWhenWindowClosed, group);
    // A drag goes on: it may have opened the group, to be dropped there.
    resetInput();
    sendFilterSubstringNotification();
    resizeView(Resizing::WhenChanged);
}

int OTIconView::mappedGroup(int group) const
{
    return groupToShowConsideringModifiers(
        group, _modifiers.option, _layout.settings().groupOrientation);
}

QString OTIconView::emptyHint() const
{
    if (!isEmpty() || _appManager.isBusyScanning()) {
        return {};
    }
    return GridGroups::hintWhenEmpty(_groupShown,
        _appManager.allApps1D().isEmpty() ? GridGroups::Known::Nothing
                                          : GridGroups::Known::Applications);
}

void OTIconView::updateLayout()
{
    _layout.setSettings(GridInput::settings());
    resizeView(Resizing::Forced);
}

void OTIconView::resizeView(Resizing resizing)
{
    const int group = mappedGroup(_groupToShow);
    const AppArray array = _appManager.appArrayForGroup(group);
    const bool isAnotherList = !(array == _appsShown);
    _groupShown = group;
    _appsShown = array;
    _finder.setApps(array);

    const Arrangement before = arrangement();
    _layout.setContents(GridInput::contents(array, group));
    _layout.setMaxIconViewSize(_host.maxIconViewSize());
    _layout.setFrameSize(size());
    _layout.calcRowColCount();
    refillCells(before);
    if (isAnotherList) {
        Q_EMIT groupShownChanged(_groupShown);
    }
    GridAccessible::contentChanged(this);
    if (resizing == Resizing::Forced || figures(_layout) != figures(before.layout)) {
        Q_EMIT NotificationCenter::defaultCenter().N_SubviewNeedsResizing(this);
    }
}

void OTIconView::forceRowColCountForRows(quint64 rows, quint64 orCols)
{
    const Arrangement before = arrangement();
    _layout.forceRowColCountForRows(rows, orCols);
    refillCells(before);
    Q_EMIT NotificationCenter::defaultCenter().N_SubviewNeedsResizing(this);
}

// Keys select an application; the pointer selects what lies under it, and whether it still rests
// there only its next move tells.
void OTIconView::refillCells(const Arrangement &before)
{
    _cells = GridCells(_layout, _appsShown);
    findColorsOfFilter();
    if (_isSelectedByKeys && _bestApp && before.selected == _bestApp) {
        selectBest();
    } else if (_isSelectedByKeys) {
        selectCoordsByKeys(coordsOfApp(before.selected));
    } else if (!(_cells == before.cells) || !_layout.hasSamePlaces(before.layout)) {
        selectCoords({});
    }
    update();
}

void OTIconView::preferenceDidChange(const QString &key, const QVariant &, const QVariant &newValue)
{
    if (key == GridKeys::groupOrientation) {
        // A reading order that changes leads here again.
        const qint64 orientation = newValue.toLongLong();
        if (orientation >= 0 && orientation <= 2 && !GridInput::readAlong(orientation)) {
            updateLayout();
        }
    } else if (key == GridKeys::iconReadingOrder || key == GridKeys::iconPadding
        || key == GridKeys::iconSpacing || key == GridKeys::minimizeEmptyCells) {
        updateLayout();
    } else if (key == GridKeys::maximumIconSize) {
        _areIconsDue = _sizeRest.isActive();
        _pictures.setHurried(_areIconsDue);
        updateLayout();
        maximumIconSizeDidChange();
    } else if (key == GridKeys::groupContentsSortOrder) {
        findColorsOfFilter();
        update();
    } else if (GridColors::keys().contains(key)) {
        updateColors();
    }
}

// A slider gives many sizes one after the other. Icons of those that do not last would keep all
// processors busy and the panel waiting; until the size rests, those there are are drawn smaller or
// larger.
void OTIconView::maximumIconSizeDidChange()
{
    _sizeRest.start();
    if (!_areIconsDue) {
        loadIconsAtSize();
    }
}

void OTIconView::loadIconsAtSize()
{
    _appManager.loadAllIconsPrioritizingGroup(_groupShown);
    _appManager.loadIconsForApps(AppArray(_appManager.runningApps()));
}

void OTIconView::listDidChange(const QString &key)
{
    const bool areRunning = key == QLatin1String("runningApps");
    if (areRunning) {
        _runningPaths = PathSet(_appManager.runningApps());
    } else if (key == QLatin1String("excludedApps1D") || key == QLatin1String("excludedApps")) {
        _excludedPaths = PathSet(_appManager.excludedApps1D());
    }
    if (_groupShown >= 0 && key == GridGroups::listOf(_groupShown)) {
        resizeView(Resizing::WhenChanged);
    } else if (areRunning) {
        update();
    }
}

QRect OTIconView::onWidget(const QRectF &rect) const
{
    return Geometry::flipped(rect, height()).toAlignedRect();
}

QRect OTIconView::onScreen(const Coords &cell) const
{
    return onWidget(rectOfCoords(cell)).translated(mapToGlobal(QPoint(0, 0)));
}

QPointF OTIconView::inView(const QPointF &onWidget) const
{
    return Geometry::flipped(onWidget, height());
}

void OTIconView::updateColors()
{
    _colors = GridColors::fromPreferences();
    update();
}

void OTIconView::showProgressStep(int step, int count, const QString &label)
{
    if (_scanNotice.showProgressStep(step, count, label)) {
        repaint();
    }
}

void OTIconView::setNeedsDisplayForCoords(const Coords &coords)
{
    if (_layout.isValidRow(coords.row, coords.col)) {
        update(paintedRect(_layout.cellAt(coords.row, coords.col).rect));
    }
}

void OTIconView::appIconDidChange(const AppRef &app)
{
    const QRectF rect = rectOfApp(app);
    if (!rect.isEmpty()) {
        _iconRepaint.add(paintedRect(rect));
    }
}

void OTIconView::newApplicationsDidChange(const QStringList &paths)
{
    for (const QString &path : paths) {
        setNeedsDisplayForApp(_appManager.knownAppForPath(path));
    }
}

bool OTIconView::isAppMarkedNew(const AppRef &app) const
{
    return _colors.markNewApplications && _appManager.newApplications().contains(app->path());
}

// Where ratios are not whole, edges are brought onto whole pixels, a little beyond the cell.
QRect OTIconView::paintedRect(const QRectF &cell) const
{
    const qreal ratio = devicePixelRatioF();
    const int beyond = ratio == std::floor(ratio) ? 0 : 1;
    return onWidget(cell).adjusted(-beyond, -beyond, beyond, beyond);
}

CellLook OTIconView::lookOf(quint64 row, quint64 column, const AppRef &app) const
{
    CellFacts facts;
    facts.hasApp = app != nullptr;
    facts.group = _groupShown;
    facts.isSelected = row == _selectedCoords.row && column == _selectedCoords.col;
    facts.isIconMove = _drags.isDragMoveInProgress();
    if (!app) {
        return cellLook(facts);
    }
    facts.isDragged = _drags.isDragged(app);
    facts.isFileDrop = _drags.isFileDrop();
    facts.isDroppable = _drags.isDroppable(app);
    facts.isFilteredOut = isAppKeyFilteredOut(app);
    facts.isMouseButtonDown = _press.mouseDownPoint.has_value() || _press.isMenu;
    facts.isExcluded = _excludedPaths.contains(app);
    facts.isRunning = _runningPaths.contains(app);
    facts.isNew = isAppMarkedNew(app);
    facts.strength = _starts.strengthOf(app->path());
    facts.hasStartMark = _starts.isShown(app->path()) && _starts.isStill();
    facts.isFunctionKeyHeld = _modifiers.function;
    return cellLook(facts);
}

void OTIconView::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    const qreal ratio = painter.deviceTransform().m11();
    const int iconEdge = int(std::lround(qreal(_layout.iconWidth()) * ratio));
    _pictures.prepare(iconEdge, ratio, _cells.count());
    GridPainter grid(painter, _layout, _colors, height());
    grid.drawBackground(rect());
    if (_scanNotice.isShown()) {
        grid.drawScanText(rect(), _scanNotice.step(), _scanNotice.label());
        return;
    }
    drawCells(grid, event->region());
    // What the pointer is over needs no mark.
    if (_isSelectedByKeys && selectedApp()) {
        grid.drawFocus(_selectedCoords.row, _selectedCoords.col);
    }
    if (!_appsShown.isFlat()) {
        grid.drawSeparators(_selectedCoords, _drags.isMarking());
    }
    if (_drags.isMarking()) {
        grid.drawBandEnd(_selectedCoords);
    }
}

void OTIconView::drawCells(GridPainter &painter, const QRegion &region)
{
    for (quint64 row = 0; row < _layout.rowCount(); ++row) {
        for (quint64 column = 0; column < _layout.columnCount(); ++column) {
            const QRectF cell = _layout.cellAt(row, column).rect;
            if (cell.isEmpty() || !region.intersects(paintedRect(cell))) {
                continue;
            }
            const AppRef app = appAtCoords({ row, column });
            painter.drawCell(row, column, lookOf(row, column, app), _runningPaths.contains(app),
                app ? _pictures.pictureOf(app) : QImage());
        }
    }
}
