#include "grid/OTIconView.h"

#include "catalogue/OTApp.h"
#include "catalogue/OTAppManager.h"
#include "grid/GridAccessible.h"
#include "grid/GridGroups.h"
#include "grid/GridHost.h"
#include "grid/GridInput.h"
#include "grid/GridKeys.h"
#include "support/Geometry.h"
#include "support/NotificationCenter.h"
#include "support/UserDefaults.h"

#include <tuple>

namespace {

// As many launches may be under way at once; a launch that waits for a slow program holds up no
// other.
constexpr int MostLaunches = 32;

// For what is under way when the grid goes, in milliseconds.
constexpr int LongestWaitForLaunches = 1000;

// Icons arrive by the hundred; painting each on its own would take longer than loading it. In
// milliseconds, less than a frame of a screen.
constexpr int RepaintInterval = 10;

// The list whose changes concern a group, by the name under which the catalogue announces it.
QString listKey(int group)
{
    switch (group) {
    case RunningGroup:
        return QStringLiteral("runningApps");
    case IncludedGroup:
    case Included1DGroup:
        return QStringLiteral("includedApps");
    case ExcludedGroup:
    case Excluded1DGroup:
        return QStringLiteral("excludedApps");
    case AllGroup:
    case All1DGroup:
        return QStringLiteral("allApps");
    case UserGroup:
    case User1DGroup:
        return QStringLiteral("userApps");
    default:
        return {};
    }
}

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
{
    _layout.setSettings(GridInput::settings());
    _launches->setMaxThreadCount(MostLaunches);
    _repaintTimer.setSingleShot(true);
    _repaintTimer.setInterval(RepaintInterval);
    connect(&_repaintTimer, &QTimer::timeout, this, &OTIconView::repaintDirtyCells);
    connect(
        &UserDefaults::standard(), &UserDefaults::changed, this, &OTIconView::preferenceDidChange);
    connect(&appManager, &OTAppManager::didChange, this, &OTIconView::listDidChange);
    const NotificationCenter &center = NotificationCenter::defaultCenter();
    connect(&center, &NotificationCenter::N_AppIconChanged, this, &OTIconView::appIconDidChange);
    connect(&center, &NotificationCenter::N_ShowProgressStep, this, &OTIconView::showProgressStep);
    connect(
        &center, &NotificationCenter::N_EventFlagsChanged, this, &OTIconView::modifierKeysChanged);
    // The window hands keys on.
    setFocusPolicy(Qt::NoFocus);
    setMouseTracking(true);
    _clock.start();
    _excludedPaths = PathSet(appManager.excludedApps1D());
    _runningPaths = PathSet(appManager.runningApps());
    GridAccessible::install();
    updateColors();
}

// A launch may wait for a program that never answers; the end of this program does not.
OTIconView::~OTIconView()
{
    if (!_launches->waitForDone(LongestWaitForLaunches)) {
        static_cast<void>(_launches.release());
    }
}

void OTIconView::registerDefaults()
{
    GridInput::registerDefaults();
    GridColors::registerDefaults();
    UserDefaults::standard().registerDefaults({
        { GridKeys::groupShownWhenWindowClosed, -1 },
        { GridKeys::reverseScrollWheel, false },
    });
}

void OTIconView::setGroupToShow(int group)
{
    if (_groupShown == mappedGroup(group)) {
        return;
    }
    _groupToShow = group;
    UserDefaults::standard().setObject(GridKeys::groupShownWhenWindowClosed, group);
    reset();
    sendFilterSubstringNotification();
    resizeView(Resizing::WhenChanged);
}

int OTIconView::mappedGroup(int group) const
{
    return groupToShowConsideringModifiers(
        group, _modifiers.option, _layout.settings().groupOrientation);
}

bool OTIconView::isFavouritesGroup() const
{
    return _groupShown == UserGroup || _groupShown == User1DGroup;
}

bool OTIconView::isExcludedGroup() const
{
    return _groupShown == ExcludedGroup || _groupShown == Excluded1DGroup;
}

QString OTIconView::groupTitle() const
{
    switch (_groupShown) {
    case RunningGroup:
        return tr("Running applications");
    case IncludedGroup:
    case Included1DGroup:
        return tr("Included applications");
    case ExcludedGroup:
    case Excluded1DGroup:
        return tr("Excluded applications");
    case AllGroup:
    case All1DGroup:
        return tr("All applications");
    case MissingGroup:
        return tr("Missing applications");
    case UserGroup:
    case User1DGroup:
        return tr("Favorites");
    default:
        return {};
    }
}

QString OTIconView::emptyHint() const
{
    if (!isEmpty() || _appManager.isBusyScanning()) {
        return {};
    }
    switch (_groupShown) {
    case RunningGroup:
        return tr("Nothing is running. An application appears here while it runs.");
    case ExcludedGroup:
    case Excluded1DGroup:
        return tr("Nothing is excluded. Choose Exclude in an application's menu.");
    case MissingGroup:
        return tr("Nothing is missing. What was excluded and is gone appears here.");
    case UserGroup:
    case User1DGroup:
        return tr("No favourites yet. Choose Add Favorite in an application's menu.");
    case IncludedGroup:
    case Included1DGroup:
        if (!_appManager.allApps1D().isEmpty()) {
            return tr("Everything is excluded. Choose Include in an application's menu.");
        }
        break;
    default:
        break;
    }
    return tr("No applications were found in the folders that are searched.");
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

    const Arrangement before = arrangement();
    _layout.setContents(GridInput::contents(array, group));
    _layout.setMaxIconViewSize(_host.maxIconViewSize());
    _layout.setFrameSize(size());
    _layout.calcRowColCount();
    fillCells();
    keepSelection(before);
    update();
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
    fillCells();
    keepSelection(before);
    update();
    Q_EMIT NotificationCenter::defaultCenter().N_SubviewNeedsResizing(this);
}

// Keys select an application; the pointer selects what lies under it, and whether it still rests
// there only its next move tells.
void OTIconView::keepSelection(const Arrangement &before)
{
    if (_isSelectedByKeys) {
        selectCoordsByKeys(coordsOfApp(before.selected));
    } else if (_cellApps != before.cellApps || !_layout.hasSamePlaces(before.layout)) {
        selectCoords({});
    }
}

void OTIconView::fillCells()
{
    _cellApps = GridInput::appsOfCells(_layout, _appsShown);
    _cellOfPath.clear();
    for (qsizetype cell = 0; cell < _cellApps.size(); ++cell) {
        if (_cellApps[cell] && !_cellOfPath.contains(_cellApps[cell]->path())) {
            _cellOfPath.insert(_cellApps[cell]->path(), cell);
        }
    }
}

Coords OTIconView::coordsOfApp(const AppRef &app) const
{
    Coords coords;
    const auto cell = app ? _cellOfPath.constFind(app->path()) : _cellOfPath.constEnd();
    if (cell != _cellOfPath.constEnd()) {
        coords.row = quint64(*cell) / _layout.columnCount();
        coords.col = quint64(*cell) % _layout.columnCount();
    }
    return coords;
}

QList<Coords> OTIconView::occupiedCells() const
{
    QList<Coords> cells;
    for (qsizetype cell = 0; cell < _cellApps.size(); ++cell) {
        if (_cellApps[cell]) {
            cells.append(
                { quint64(cell) / _layout.columnCount(), quint64(cell) % _layout.columnCount() });
        }
    }
    return cells;
}

AppRef OTIconView::appAtCoords(const Coords &coords) const
{
    return _layout.isValidRow(coords.row, coords.col)
        ? _cellApps[qsizetype(coords.row * _layout.columnCount() + coords.col)]
        : nullptr;
}

void OTIconView::preferenceDidChange(const QString &key, const QVariant &, const QVariant &newValue)
{
    if (key == GridKeys::groupOrientation) {
        orientationDidChange(newValue.toLongLong());
    } else if (key == GridKeys::iconReadingOrder || key == GridKeys::iconPadding
        || key == GridKeys::iconSpacing || key == GridKeys::minimizeEmptyCells) {
        updateLayout();
    } else if (key == GridKeys::maximumIconSize) {
        updateLayout();
        _appManager.loadAllIconsPrioritizingGroup(_groupShown);
        _appManager.loadIconsForApps(AppArray(_appManager.runningApps()));
    } else if (GridColors::keys().contains(key)) {
        updateColors();
    }
}

void OTIconView::orientationDidChange(qint64 orientation)
{
    if (orientation < 0 || orientation > 2) {
        return;
    }
    // Bands side by side read across, stacked bands read down. The layout follows the reading
    // order, except where that stays as it was.
    const qint64 readingOrder = orientation == 2 ? 1 : 2;
    if (UserDefaults::standard().integerForKey(GridKeys::iconReadingOrder) == readingOrder) {
        updateLayout();
    } else {
        UserDefaults::standard().setObject(GridKeys::iconReadingOrder, readingOrder);
    }
}

void OTIconView::listDidChange(const QString &key)
{
    const bool areRunning = key == QLatin1String("runningApps");
    if (areRunning) {
        _runningPaths = PathSet(_appManager.runningApps());
    } else if (key == QLatin1String("excludedApps1D") || key == QLatin1String("excludedApps")) {
        _excludedPaths = PathSet(_appManager.excludedApps1D());
    }
    if (_groupShown >= 0 && key == listKey(_groupShown)) {
        resizeView(Resizing::WhenChanged);
    } else if (areRunning) {
        update();
    }
}

QRect OTIconView::onWidget(const QRectF &rect) const
{
    return Geometry::flipped(rect, height()).toAlignedRect();
}

QPointF OTIconView::inView(const QPointF &onWidget) const
{
    return Geometry::flipped(onWidget, height());
}

void OTIconView::resizeEvent(QResizeEvent *)
{
    _layout.setFrameSize(size());
}
