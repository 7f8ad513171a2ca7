#include "shell/panel/OTWindow.h"

#include "catalogue/OTAppManager.h"
#include "grid/OTIconView.h"
#include "grid/layout/GridKeys.h"
#include "platform/Desktop.h"
#include "shell/base/OTBkgndView.h"
#include "shell/panel/EmptyHint.h"
#include "shell/panel/FrameChange.h"
#include "shell/panel/PanelButton.h"
#include "shell/panel/PanelMessages.h"
#include "shell/panel/PanelResize.h"
#include "shell/panel/WindowAnimation.h"
#include "shell/selector/HueBar.h"
#include "shell/selector/OTIconOverlayView.h"
#include "shell/selector/OTStatsControl.h"
#include "support/NotificationCenter.h"
#include "support/UserDefaults.h"

#include <QApplication>
#include <QScreen>
#include <QWindow>

#include <cmath>

namespace {

// Seconds.
constexpr double fadeTime = 0.25;

// The frame round the grid, in points: room for the buttons above it and the selector below.
constexpr PanelMargins panelMargins { .left = 18, .right = 18, .top = 30, .bottom = 34 };
// Of the buttons, from the nearest corner of the panel to their middle.
constexpr QPoint buttonInset(23, 18);
// Of the selector, from the sides of the panel, so that the round corners stay free.
constexpr int selectorInset = 22;
constexpr int selectorHeight = 18;
// Between the selector and the bar of hues.
constexpr int hueBarGap = 16;
// How often a panel that is shown asks for its place.
constexpr int MostPlacings = 3;
// A panel with less opacity cannot be seen.
constexpr double leastOpacity = 0.01;

namespace Key {
const QString groupToShowWhenWindowOpens = QStringLiteral("groupToShowWhenWindowOpens");
const QString nonActivatingPanel = QStringLiteral("nonActivatingPanel");
const QString animateWindowResizing = QStringLiteral("animateWindowResizing");
} // namespace Key

} // namespace

OTWindow::OTWindow(OTAppManager &appManager, Desktop &desktop, std::optional<QSizeF> largestGrid)
    : QWidget(nullptr, Qt::Window | Qt::FramelessWindowHint)
    , _desktop(desktop)
    , _largestGrid(largestGrid)
    , _background(new OTBkgndView(this))
    , _iconView(new OTIconView(appManager, *this, _background))
    , _statsControl(new OTStatsControl(appManager, *_iconView, _background))
    , _hueBar(new HueBar(appManager, *_iconView, _background))
    , _closeButton(new PanelButton(PanelButton::Kind::Close, _background))
    , _prefsButton(new PanelButton(PanelButton::Kind::Gear, _background))
    , _emptyHint(new EmptyHint(appManager, *_iconView, _background))
    , _overlay(new OTIconOverlayView(appManager, *_iconView, _background))
    , _margins(panelMargins)
    , _isNonActivating(UserDefaults::standard().boolForKey(Key::nonActivatingPanel))
    , _level(_isNonActivating ? OwnWindows::Level::Raised : OwnWindows::Level::Normal)
{
    setNames();
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_QuitOnClose, false);
    // The keyboard is for the grid, input methods included.
    setAttribute(Qt::WA_InputMethodEnabled);
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setAcceptDrops(true);
    _background->installEventFilter(this);
    _iconView->installEventFilter(this);
    _statsControl->installEventFilter(this);
    _overlay->setObjectName(QStringLiteral("Ortu Overlay"));
    _overlay->raise();

    const auto mayMove = [this] { return !_desktop.motion().isReduced(); };
    const auto mayFade = [this, mayMove] { return mayMove() && _desktop.compositing().isActive(); };
    _animation = std::make_unique<WindowAnimation>(*this, _desktop.ownWindows(), mayFade, mayMove);
    _frameChange = std::make_unique<FrameChange>(*this, *_background, _desktop.ownWindows(),
        // Without a compositor what is not painted would be black.
        [this](const QSize &size) {
            return _desktop.compositing().isActive() ? QRegion() : OTBkgndView::roundedMask(size);
        });
    _resize =
        std::make_unique<PanelResize>(*this, *_iconView, *_frameChange, _desktop.ownWindows());
    connect(_resize.get(), &PanelResize::panelResized, this, [this] {
        _overlay->show();
        layOutGrid();
        Q_EMIT NotificationCenter::defaultCenter().N_WindowDidResize(this);
    });
    connect(_animation.get(), &WindowAnimation::fadedOut, this, &OTWindow::hidden);
    connect(_iconView, &OTIconView::dragWanted, &_iconView->drags(), &GridDrags::runMove);
    connect(&_desktop.dragWatch(), &DragWatch::sourceGone, this, &OTWindow::dragLeft);
    connect(_closeButton, &PanelButton::clicked, this, &OTWindow::closeWanted);
    connect(_prefsButton, &PanelButton::clicked, this, &OTWindow::prefsWanted);
    connect(&NotificationCenter::defaultCenter(), &NotificationCenter::N_SubviewNeedsResizing, this,
        &OTWindow::subviewDidResize);
    connect(&UserDefaults::standard(), &UserDefaults::changed, this, [this](const QString &key) {
        if (GridColors::keys().contains(key)) {
            updateColors();
        } else if (key == Key::animateWindowResizing) {
            readAnimation();
        } else if (key == Key::nonActivatingPanel) {
            readActivation();
        }
    });
    connect(&_desktop.compositing(), &Compositing::changed, this, &OTWindow::compositingDidChange);
    connect(qGuiApp, &QGuiApplication::screenRemoved, this, &OTWindow::screenParametersDidChange);
    connect(qGuiApp, &QGuiApplication::primaryScreenChanged, this,
        &OTWindow::screenParametersDidChange);
    connect(
        _statsControl, &OTStatsControl::roomWanted, this, [this] { subviewDidResize(_iconView); });
    new PanelMessages(*this);
    chooseScreen();
    readAnimation();
    updateColors();
    compositingDidChange();
    subviewDidResize(_iconView);
}

OTWindow::~OTWindow() = default;

void OTWindow::setNames()
{
    // Task bars show the title; the role tells this window from the program's others.
    setWindowTitle(QStringLiteral("Ortu"));
    setWindowIconText(windowTitle());
    setObjectName(QStringLiteral("Ortu Main"));
    setWindowRole(objectName());
}

void OTWindow::registerDefaults()
{
    UserDefaults::standard().registerDefaults({
        { Key::animateWindowResizing, false },
        { Key::nonActivatingPanel, false },
        { Key::groupToShowWhenWindowOpens, 1 },
    });
    OTBkgndView::registerDefaults();
    OTStatsControl::registerDefaults();
    HueBar::registerDefaults();
    OTIconOverlayView::registerDefaults();
}

int OTWindow::groupToShowWhenWindowOpens()
{
    const UserDefaults &defaults = UserDefaults::standard();
    for (const QString &key :
        { Key::groupToShowWhenWindowOpens, GridKeys::groupShownWhenWindowClosed }) {
        const qint64 group = defaults.integerForKey(key);
        if (group >= 0 && group < GroupCount) {
            return int(group);
        }
    }
    return 1;
}

bool OTWindow::isShown() const
{
    return isVisible() && !_animation->isFadingOut();
}

void OTWindow::show(const ActivationStamp &stamp)
{
    if (_animation->isFadingOut()) {
        _iconView->resignFirstResponder();
    }
    const bool isComing = !isVisible() || windowOpacity() < leastOpacity;
    if (isComing) {
        chooseScreen();
    }
    _iconView->setGroupToShow(groupToShowWhenWindowOpens());
    _statsControl->takeCounts();
    if (isComing) {
        setFrame(centredFrame());
        _centre = visibleFrame().center();
        _isMovedByUser = false;
        _askedFor.clear();
        _placingsLeft = MostPlacings;
    }
    makeWindow();
    _desktop.ownWindows().setStanding(*windowHandle(),
        _taskBar == TaskBar::Listed ? OwnWindows::TaskBar::Listed : OwnWindows::TaskBar::Skipped,
        _level);
    _animation->fadeInOver(fadeTime, [this] { _frameChange->showVeiled(); });
    OwnWindows::restoreActivity(*this);
    _desktop.ownWindows().activate(*windowHandle(), stamp);
    _frameChange->unveil();
    Q_EMIT shown();
}

// From its first showing on there is a window, which stays.
void OTWindow::makeWindow()
{
    if (!windowHandle()) {
        winId();
        connect(windowHandle(), &QWindow::screenChanged, this, &OTWindow::takeScreenOfFrame);
    }
}

void OTWindow::hide()
{
    if (!isShown()) {
        return;
    }
    UserDefaults::standard().setObject(
        GridKeys::groupShownWhenWindowClosed, _iconView->groupToShow());
    _animation->fadeOutOver(fadeTime);
    _movedFrame = {};
}

QRect OTWindow::selectorRect() const
{
    const int bottom = int(_margins.bottom);
    const QSize panel = _background->size();
    return { selectorInset, panel.height() - bottom + (bottom - selectorHeight) / 2,
        std::max(0, panel.width() - 2 * selectorInset), selectorHeight };
}

int OTWindow::leastWidth() const
{
    return _statsControl->leastWidth(selectorHeight) + 2 * selectorInset;
}

bool OTWindow::iconViewHasUserFocus() const
{
    const QWidget *const modal = QApplication::activeModalWidget();
    return modal == nullptr || modal == this;
}

void OTWindow::raise()
{
    setLevel(OwnWindows::Level::Raised);
}

// Also a panel that floats because it does not activate the program: lowering it is for good.
void OTWindow::lower()
{
    setLevel(OwnWindows::Level::Normal);
}

void OTWindow::setLevel(OwnWindows::Level level)
{
    _level = level;
    if (windowHandle()) {
        _desktop.ownWindows().setLevel(*windowHandle(), level);
    }
}

void OTWindow::performClose()
{
    _closeButton->click();
}

void OTWindow::cancelOperation()
{
    _overlay->setMessage({});
    if (!_iconView->handleCancelOperation()) {
        Q_EMIT closeWanted();
    }
}

QImage OTWindow::backgroundColorPatternImageOfSize(const QSizeF &size, qreal ratio) const
{
    return _background->backgroundColorPatternImageOfSize(size, ratio);
}

QPoint OTWindow::sheetPosition() const
{
    return mapToGlobal(QPoint(width() / 2, int(_margins.top)));
}

void OTWindow::updateColors()
{
    const GridColors &colors = _iconView->colors();
    const PanelButtonLook look(colors.winAlpha, colors.winColor);
    _closeButton->setLook(look);
    _prefsButton->setLook(look);
    _emptyHint->updateColors();
    _hueBar->update();
}

void OTWindow::readAnimation()
{
    _useCoreAnimation = UserDefaults::standard().boolForKey(Key::animateWindowResizing);
}

void OTWindow::readActivation()
{
    _isNonActivating = UserDefaults::standard().boolForKey(Key::nonActivatingPanel);
    setLevel(_isNonActivating ? OwnWindows::Level::Raised : OwnWindows::Level::Normal);
    Q_EMIT isNonActivatingChanged();
}

void OTWindow::compositingDidChange()
{
    _background->setIsBlended(_desktop.compositing().isActive());
    _frameChange->updateShape();
}

void OTWindow::layOutSubviews()
{
    layOutGrid();
    _statsControl->layOut(selectorRect());
    layOutHueBar();
    const auto place = [](QWidget *button, const QPoint &middle) {
        button->move(middle - QPoint(button->width() / 2, button->height() / 2));
    };
    place(_closeButton, buttonInset);
    place(_prefsButton, QPoint(_background->width() - buttonInset.x(), buttonInset.y()));
    _overlay->setNotePlace(QRect(QPoint(2 * buttonInset.x(), 0),
        QPoint(_background->width() - 1 - 2 * buttonInset.x(), 2 * buttonInset.y() - 1)));
}

void OTWindow::layOutHueBar()
{
    QRect room = selectorRect();
    room.setLeft(_statsControl->geometry().right() + 1 + hueBarGap);
    _hueBar->layOut(room);
}

void OTWindow::layOutGrid()
{
    const QRect panel = _background->rect();
    const QRect grid = panel.adjusted(
        int(_margins.left), int(_margins.top), -int(_margins.right), -int(_margins.bottom));
    // A panel may be wider than the grid needs.
    const int spare = _iconView->isEmpty()
        ? 0
        : std::max(0, grid.width() - int(std::ceil(_iconView->viewSize().width())));
    _iconView->setGeometry(grid.adjusted(spare / 2, 0, spare / 2 - spare, 0));
    _overlay->setGeometry(panel);
    _emptyHint->setGeometry(grid);
    _emptyHint->setVisible(_iconView->isEmpty() && !_resize->isUnderWay());
}
