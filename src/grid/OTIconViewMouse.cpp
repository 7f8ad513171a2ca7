// The part of the grid that the pointer drives: selection, clicks, the menu and what it does.

#include "catalogue/OTApp.h"
#include "catalogue/OTAppManager.h"
#include "grid/DisappearingCursor.h"
#include "grid/GridHost.h"
#include "grid/Log.h"
#include "grid/MenuColors.h"
#include "grid/OTIconView.h"
#include "grid/PoofEffect.h"
#include "platform/Desktop.h"
#include "support/Geometry.h"
#include "support/NotificationCenter.h"

#include <QApplication>
#include <QCursor>
#include <QMenu>
#include <QMouseEvent>

#include <cmath>
#include <limits>
#include <memory>
#include <utility>

namespace {

// A press that moves farther, on either axis, begins a drag.
constexpr qreal DragThreshold = 2.0;

// The end of a list of whatever length; the catalogue clamps it.
constexpr qsizetype AtTheEnd = std::numeric_limits<qint32>::max();

} // namespace

void OTIconView::myMouseMoved(const QPointF &inView)
{
    selectCoords(coordsOfPoint(inView));
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
    _mouseDownPoint = isLeft && !opensMenu ? std::optional(point) : std::nullopt;
    _isDragWanted = false;
    _pressedApp = app;
    if (app) {
        setNeedsDisplayForApp(app);
    }
    if (isLeft && !app) {
        _host.mousePressed(event);
    }
    if (opensMenu) {
        openMenu(event->globalPosition().toPoint());
        _isMenuPressed = _menu != nullptr;
    }
    event->setAccepted(isLeft || app);
}

void OTIconView::mouseMoveEvent(QMouseEvent *event)
{
    const QPointF point = inView(event->position());
    if (!_mouseDownPoint) {
        myMouseMoved(point);
        return;
    }
    const QPointF way = point - *_mouseDownPoint;
    const bool isFar = std::abs(way.x()) > DragThreshold || std::abs(way.y()) > DragThreshold;
    const bool canBeDragged =
        _groupShown != -1 && _groupShown != RunningGroup && _groupShown != MissingGroup;
    if (isFar && canBeDragged && !_isDragWanted && event->buttons().testFlag(Qt::LeftButton)
        && appAtPoint(*_mouseDownPoint)) {
        _isDragWanted = true;
        Q_EMIT dragWanted(coordsOfPoint(*_mouseDownPoint));
    }
}

void OTIconView::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::RightButton) {
        _mouseDownPoint.reset();
        setNeedsDisplayForCoords(_selectedCoords);
        return;
    }
    if (event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    modifierKeysChanged(event->modifiers());
    // A click on the inactive window counts as well.
    _modifiers = ModifierKeys::of(event->modifiers() & ~_ignoredModifiers);
    // The cells may have been filled anew since.
    const AppRef pressed = _mouseDownPoint ? std::exchange(_pressedApp, nullptr) : nullptr;
    const QPointF point = inView(event->position());
    _mouseDownPoint.reset();
    _isDragWanted = false;
    setNeedsDisplayForCoords(_selectedCoords);
    // However far the pointer was meanwhile: a drag takes the release for itself.
    if (pressed && pressed == appAtPoint(point)) {
        clicked(pressed, event->globalPosition().toPoint());
    } else {
        myMouseMoved(point);
        _host.mouseReleased(event);
    }
}

void OTIconView::clicked(const AppRef &app, const QPoint &onScreen)
{
    _clickOnScreen = onScreen;
    selectCoords(coordsOfApp(app));
    setNeedsDisplayForApp(app);
    if (_modifiers.shift) {
        if (isFavouritesGroup()) {
            removeSelectedAppFromUser();
        } else if (_groupShown != RunningGroup) {
            if (indexOfApp(_appManager.excludedApps1D(), app) >= 0) {
                includeSelectedApp();
            } else {
                excludeSelectedApp();
            }
        }
    } else if (_modifiers.command) {
        showAppInFinder();
    } else {
        launchApp(app);
    }
    _clickOnScreen.reset();
}

// While the menu is open the pointer is in it, and the application stays selected.
void OTIconView::leaveEvent(QEvent *)
{
    if (!_menu) {
        selectCoords({});
    }
}

void OTIconView::launchApp(const AppRef &app, const QMimeData *withPasteboard)
{
    if (!app) {
        return;
    }
    if (!app->isPathValid()) {
        if (isFavouritesGroup()) {
            _appManager.locateUserApps();
        } else {
            qCWarning(lcGrid, "Invalid application path: %s", qUtf8Printable(app->path()));
            Q_EMIT NotificationCenter::defaultCenter().N_UserMessage(
                tr("%1 cannot be started: it is no longer there.").arg(app->displayName()));
        }
        return;
    }
    _launches->start([app, documents = OTApp::documentsOnPasteboard(withPasteboard)] {
        app->launchWithDocuments(documents);
    });
    _host.hide();
}

QMenu *OTIconView::contextualMenu()
{
    const AppRef app = selectedApp();
    if (!app) {
        return nullptr;
    }
    auto menu = std::make_unique<QMenu>(tr("Contextual Menu"));
    setMenuColors(*menu, _colors);
    const auto add = [&](const QString &title, auto action) {
        menu->addAction(title, this, [this, app, action] {
            // The cells may have been filled anew since.
            selectKeepingKeys(coordsOfApp(app));
            if (selectedApp()) {
                action();
            }
        });
    };
    if (isFavouritesGroup()) {
        add(tr("Move to New Group"), [this] { addSelectedAppToUserNewGroup(); });
        add(tr("Remove Favorite"), [this] { removeSelectedAppFromUser(); });
    } else {
        if (indexOfApp(_appManager.excludedApps1D(), app) >= 0) {
            add(tr("Include"), [this] { includeSelectedApp(); });
        } else {
            add(tr("Exclude"), [this] { excludeSelectedApp(); });
        }
        if (indexOfApp(_appManager.userApps1D(), app) < 0) {
            menu->addSeparator();
            add(tr("Add Favorite"), [this] { addSelectedAppToUser(); });
            add(tr("Add Favorite in New Group"), [this] { addSelectedAppToUserNewGroup(); });
        }
    }
    menu->addSeparator();
    add(tr("Show in Finder"), [this] { showAppInFinder(); });
    if (_appManager.isAppRunning(app)) {
        menu->addSeparator();
        if (app->isVisible()) {
            add(tr("Hide"), [this] { hideSelectedApp(); });
        } else {
            add(tr("Show"), [this] { showSelectedApp(); });
        }
        add(tr("Quit"), [this] { quitSelectedApp(); });
    }
    addActions(*menu, app);
    return menu.release();
}

// What the application itself offers, such as a new window.
void OTIconView::addActions(QMenu &menu, const AppRef &app)
{
    const QList<ApplicationActions::Action> actions = app->actions();
    if (!actions.isEmpty()) {
        menu.addSeparator();
    }
    for (const ApplicationActions::Action &action : actions) {
        QString title = action.title;
        title.replace(QLatin1Char('&'), QLatin1String("&&"));
        menu.addAction(title, this, [this, app, id = action.id] {
            _launches->start([app, id] { app->performAction(id); });
            _host.hide();
        });
    }
}

void OTIconView::openMenuAt(const Coords &coords)
{
    selectKeepingKeys(coords);
    if (selectedApp()) {
        const QPointF middle =
            Geometry::flipped(_layout.cellAt(coords.row, coords.col).rect, height()).center();
        openMenu(mapToGlobal(middle.toPoint()));
    }
}

void OTIconView::openMenu(const QPoint &onScreen)
{
    if (_menu) {
        _menu->close();
    }
    _menu = contextualMenu();
    if (!_menu) {
        return;
    }
    _menu->setParent(this, _menu->windowFlags());
    _menu->setAttribute(Qt::WA_DeleteOnClose);
    connect(_menu, &QMenu::aboutToShow, this, [this] { Q_EMIT menuIsOpenChanged(true); });
    connect(_menu, &QMenu::aboutToHide, this, &OTIconView::menuWillHide);
    _menu->popup(onScreen);
}

void OTIconView::menuWillHide()
{
    _isMenuPressed = false;
    setNeedsDisplayForCoords(_selectedCoords);
    Q_EMIT menuIsOpenChanged(false);
    // The pointer is elsewhere now, within the grid or not. What was chosen comes first, and the
    // press that closes a menu may open the next one.
    const auto follow = [this] {
        modifierKeysChanged(QGuiApplication::queryKeyboardModifiers());
        const bool isAnotherOpen = _menu && _menu->isVisible();
        if (!isAnotherOpen && !_isSelectedByKeys) {
            const QPoint pointer = QCursor::pos();
            const bool isOverGrid = QApplication::widgetAt(pointer) == this;
            selectCoords(isOverGrid ? coordsOfPoint(inView(mapFromGlobal(pointer))) : Coords());
        }
    };
    QMetaObject::invokeMethod(this, follow, Qt::QueuedConnection);
}

void OTIconView::includeSelectedApp()
{
    const AppRef app = selectedApp();
    if (app && indexOfApp(_appManager.excludedApps1D(), app) >= 0) {
        if (isExcludedGroup()) {
            showPoof();
        }
        _appManager.includeApp(app);
        setNeedsDisplayForApp(app);
    }
}

void OTIconView::excludeSelectedApp()
{
    const AppRef app = selectedApp();
    if (app && indexOfApp(_appManager.excludedApps1D(), app) < 0) {
        if (!isExcludedGroup()) {
            showPoof();
        }
        _appManager.excludeApp(app);
        setNeedsDisplayForApp(app);
    }
}

void OTIconView::addSelectedAppToUser()
{
    if (const AppRef app = selectedApp()) {
        _appManager.moveApp(app, UserGroup, /*bunch=*/0, AtTheEnd);
    }
}

void OTIconView::addSelectedAppToUserNewGroup()
{
    if (const AppRef app = selectedApp()) {
        _appManager.moveApp(app, UserGroup, AtTheEnd, /*index=*/0);
    }
}

void OTIconView::removeSelectedAppFromUser()
{
    if (const AppRef app = selectedApp()) {
        _appManager.removeAppsFromUserApps({ app });
        setNeedsDisplayForApp(app);
    }
}

void OTIconView::showSelectedApp()
{
    if (const AppRef app = selectedApp()) {
        app->show();
    }
}

void OTIconView::hideSelectedApp()
{
    if (const AppRef app = selectedApp()) {
        app->hide();
    }
}

void OTIconView::quitSelectedApp()
{
    if (const AppRef app = selectedApp()) {
        _appManager.quitApp(app);
    }
}

void OTIconView::showAppInFinder()
{
    if (const AppRef app = selectedApp()) {
        // Asking a file browser may take a while.
        _launches->start([app] { app->revealInFinder(); });
    }
}

// Where the click was, otherwise in the middle of the cell.
void OTIconView::showPoof()
{
    const Coords &cell = _selectedCoords;
    if (!_layout.isValidRow(cell.row, cell.col)
        || !_appManager.desktop().compositing().isActive()) {
        return;
    }
    const QRectF onWidget = Geometry::flipped(_layout.cellAt(cell.row, cell.col).rect, height());
    PoofEffect::show(_clickOnScreen.value_or(mapToGlobal(onWidget.center().toPoint())), this);
}

void OTIconView::updateCursor()
{
    if (_modifiers.shift && _groupShown > RunningGroup) {
        setCursor(disappearingItemCursor());
    } else {
        unsetCursor();
    }
}
