#include "grid/OTIconView.h"

#include "catalogue/OTApp.h"
#include "catalogue/OTAppManager.h"
#include "grid/GridGroups.h"
#include "grid/GridHost.h"
#include "grid/GridInput.h"
#include "grid/GridKeys.h"
#include "support/Geometry.h"
#include "support/NotificationCenter.h"
#include "support/UserDefaults.h"

#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>

#include <cmath>
#include <tuple>

namespace {

// As many launches may be under way at once; a launch that waits for a slow program holds up no
// other.
constexpr int MostLaunches = 32;

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

} // namespace

OTIconView::OTIconView(OTAppManager &appManager, const GridHost &host, QWidget *parent)
    : QWidget(parent)
    , _appManager(appManager)
    , _host(host)
{
    _layout.setSettings(GridInput::settings());
    _launches.setMaxThreadCount(MostLaunches);
    _repaintTimer.setSingleShot(true);
    _repaintTimer.setInterval(RepaintInterval);
    connect(&_repaintTimer, &QTimer::timeout, this, &OTIconView::repaintDirtyCells);
    connect(
        &UserDefaults::standard(), &UserDefaults::changed, this, &OTIconView::preferenceDidChange);
    connect(&appManager, &OTAppManager::didChange, this, &OTIconView::listDidChange);
    connect(&NotificationCenter::defaultCenter(), &NotificationCenter::N_AppIconChanged, this,
        &OTIconView::appIconDidChange);
}

OTIconView::~OTIconView() = default;

void OTIconView::registerDefaults()
{
    GridInput::registerDefaults();
    UserDefaults::standard().registerDefaults({ { GridKeys::groupShownWhenWindowClosed, -1 } });
}

void OTIconView::setGroupToShow(int group)
{
    if (_groupShown == mappedGroup(group)) {
        return;
    }
    _groupToShow = group;
    UserDefaults::standard().setObject(GridKeys::groupShownWhenWindowClosed, group);
    resizeView(Resizing::WhenChanged);
}

int OTIconView::mappedGroup(int group) const
{
    return groupToShowConsideringModifiers(group, false, _layout.settings().groupOrientation);
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

    const auto figures = [this] {
        return std::tuple(
            _layout.columnCount(), _layout.rowCount(), _layout.bunchCount(), _layout.cellWidth());
    };
    const auto before = figures();
    _layout.setContents(GridInput::contents(array, group));
    _layout.setMaxIconViewSize(_host.maxIconViewSize());
    _layout.setFrameSize(size());
    _layout.calcRowColCount();
    fillCells();
    update();
    if (isAnotherList) {
        Q_EMIT groupShownChanged(_groupShown);
    }
    if (resizing == Resizing::Forced || figures() != before) {
        Q_EMIT NotificationCenter::defaultCenter().N_SubviewNeedsResizing(this);
    }
}

void OTIconView::forceRowColCountForRows(quint64 rows, quint64 orCols)
{
    _layout.forceRowColCountForRows(rows, orCols);
    fillCells();
    update();
    Q_EMIT NotificationCenter::defaultCenter().N_SubviewNeedsResizing(this);
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
    if (_groupShown >= 0 && key == listKey(_groupShown)) {
        resizeView(Resizing::WhenChanged);
    } else if (key == QLatin1String("runningApps")) {
        update();
    }
}

void OTIconView::appIconDidChange(const AppRef &app)
{
    const QRectF rect = rectOfApp(app);
    if (rect.isEmpty()) {
        return;
    }
    _dirtyCells += onWidget(rect);
    if (!_repaintTimer.isActive()) {
        _repaintTimer.start();
    }
}

void OTIconView::repaintDirtyCells()
{
    update(_dirtyCells);
    _dirtyCells = {};
}

QRect OTIconView::onWidget(const QRectF &rect) const
{
    return Geometry::flipped(rect, height()).toAlignedRect();
}

QPointF OTIconView::inView(const QPointF &onWidget) const
{
    return Geometry::flipped(onWidget, height());
}

void OTIconView::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    for (quint64 row = 0; row < _layout.rowCount(); ++row) {
        for (quint64 column = 0; column < _layout.columnCount(); ++column) {
            if (event->region().intersects(onWidget(_layout.cellAt(row, column).rect))) {
                drawCell(painter, row, column);
            }
        }
    }
}

void OTIconView::drawCell(QPainter &painter, quint64 row, quint64 column)
{
    const AppRef app = appAtCoords({ row, column });
    const QRectF cell = _layout.cellAt(row, column).rect;
    if (!app || cell.isEmpty()) {
        return;
    }
    const QRectF onScreen = Geometry::flipped(cell, height());
    const qreal padding = qreal(_layout.cellPaddingForIconWidth(_layout.iconWidth()));
    painter.drawImage(onScreen.topLeft() + QPointF(padding, padding), pictureOf(app));
}

QImage OTIconView::pictureOf(const AppRef &app)
{
    const qreal ratio = devicePixelRatioF();
    const int edge = int(std::lround(qreal(_layout.iconWidth()) * ratio));
    if (edge != _scaledSize) {
        _scaledIcons.clear();
        _scaledSize = edge;
    }
    const QImage icon = app->icon();
    if (icon.width() == edge && ratio == 1) {
        return icon;
    }
    QImage &scaled = _scaledIcons[icon.cacheKey()];
    if (scaled.isNull()) {
        scaled = icon.scaled(edge, edge, Qt::KeepAspectRatio, Qt::SmoothTransformation);
        scaled.setDevicePixelRatio(ratio);
    }
    return scaled;
}

void OTIconView::resizeEvent(QResizeEvent *)
{
    _layout.setFrameSize(size());
}

void OTIconView::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton) {
        _pressedCoords = coordsOfPoint(inView(event->position()));
    }
}

void OTIconView::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton) {
        return;
    }
    const Coords released = coordsOfPoint(inView(event->position()));
    const AppRef app = appAtCoords(released);
    if (app && released == _pressedCoords) {
        launch(app);
    }
    _pressedCoords = {};
}

void OTIconView::launch(const AppRef &app)
{
    const bool isFavourite = _groupShown == UserGroup || _groupShown == User1DGroup;
    if (isFavourite && !app->isPathValid()) {
        _appManager.locateUserApps();
        return;
    }
    _launches.start([app] { app->launchWithPasteboard(nullptr); });
}
