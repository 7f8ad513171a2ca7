#include "grid/AppCommands.h"

#include "catalogue/OTApp.h"
#include "catalogue/OTAppManager.h"
#include "grid/GridAccessible.h"
#include "grid/GridHost.h"
#include "grid/OTIconView.h"
#include "grid/dragging/DropPlace.h"
#include "grid/drawing/Log.h"
#include "grid/drawing/PoofEffect.h"
#include "grid/layout/GridGroups.h"
#include "grid/layout/GridInput.h"
#include "platform/Desktop.h"
#include "support/NotificationCenter.h"

#include <QApplication>
#include <QPointer>

constexpr qsizetype AtTheEnd = DropPlace::AtTheEnd;

void AppCommands::moveApp(const AppRef &app, const DropPlace &place)
{
    // Only the favourites in bunches take a new one.
    if (place.isNewBunch) {
        _appManager.moveAppNewBunchAtIndex(app, UserGroup, place.bunch);
    } else {
        _appManager.moveApp(app, _view.groupShown(), place.bunch, place.index);
    }
}

void AppCommands::launchApp(const AppRef &app, const QMimeData *withPasteboard)
{
    if (!app) {
        return;
    }
    if (!app->isPathValid()) {
        if (GridGroups::isFavourites(_view.groupShown())) {
            _appManager.locateUserApps();
        } else {
            qCWarning(lcGrid, "Invalid application path: %s", qUtf8Printable(app->path()));
            Q_EMIT NotificationCenter::defaultCenter().N_UserMessage(
                OTIconView::tr("%1 cannot be started: it is no longer there.")
                    .arg(app->displayName()));
        }
        return;
    }
    std::optional<QList<QUrl>> documents = OTApp::documentsOnPasteboard(withPasteboard);
    if (!documents && _view.drags().isOffering()) {
        documents = _view.drags().takeOffered(app);
        if (!documents) {
            return;
        }
    }
    beginStart(app);
    start(app, [app, documents] { return app->launchWithDocuments(documents); });
}

void AppCommands::openNewWindow(const AppRef &app)
{
    if (!_appManager.isAppRunning(app) || _view.drags().isOffering() || !app->isPathValid()
        || !app->canOpenNewWindow()) {
        launchApp(app);
        return;
    }
    _view.starts().begin(app->path());
    start(app, [app] { return app->openNewWindow(); });
}

void AppCommands::performAction(const AppRef &app, const QString &id)
{
    beginStart(app);
    start(app, [app, id] { return app->performAction(id); });
}

// What runs is raised, or opens its documents where it likes.
void AppCommands::beginStart(const AppRef &app)
{
    if (!_appManager.isAppRunning(app)) {
        _view.starts().begin(app->path());
    }
}

void AppCommands::start(const AppRef &app, const std::function<bool()> &job)
{
    _appManager.newApplications().remove({ app->path() });
    _launches.start([app, job, starts = QPointer<StartMarks>(&_view.starts())] {
        if (!job()) {
            // A launch may outlive the view.
            QMetaObject::invokeMethod(QCoreApplication::instance(), [app, starts] {
                if (starts) {
                    starts->end(app->path());
                }
            });
        }
    });
    _host.hide();
}

void AppCommands::clicked(const AppRef &app, const ModifierKeys &modifiers, const QPoint &onScreen)
{
    _clickOnScreen = onScreen;
    _view.selectCoords(_view.coordsOfApp(app));
    _view.setNeedsDisplayForApp(app);
    if (modifiers.shift) {
        if (GridGroups::isFavourites(_view.groupShown())) {
            removeSelectedAppFromUser();
        } else if (_view.groupShown() != RunningGroup) {
            if (indexOfApp(_appManager.excludedApps1D(), app) >= 0) {
                includeSelectedApp();
            } else {
                excludeSelectedApp();
            }
        }
    } else if (modifiers.command && !_view.drags().isOffering()) {
        showAppInFinder();
    } else {
        launchApp(app);
    }
    _clickOnScreen.reset();
}

void AppCommands::includeSelectedApp()
{
    const AppRef app = _view.selectedApp();
    if (app && indexOfApp(_appManager.excludedApps1D(), app) >= 0) {
        if (GridGroups::isExcluded(_view.groupShown())) {
            showPoof();
        }
        _appManager.includeApp(app);
        _view.setNeedsDisplayForApp(app);
    }
}

void AppCommands::excludeSelectedApp()
{
    const AppRef app = _view.selectedApp();
    if (app && indexOfApp(_appManager.excludedApps1D(), app) < 0) {
        if (!GridGroups::isExcluded(_view.groupShown())) {
            showPoof();
        }
        _appManager.excludeApp(app);
        _view.setNeedsDisplayForApp(app);
    }
}

void AppCommands::addSelectedAppToUser()
{
    if (const AppRef app = _view.selectedApp()) {
        _appManager.moveApp(app, UserGroup, /*bunch=*/0, AtTheEnd);
    }
}

void AppCommands::addSelectedAppToUserNewGroup()
{
    if (const AppRef app = _view.selectedApp()) {
        _appManager.moveApp(app, UserGroup, AtTheEnd, /*index=*/0);
    }
}

void AppCommands::removeSelectedAppFromUser()
{
    if (const AppRef app = _view.selectedApp()) {
        _appManager.removeAppsFromUserApps({ app });
        _view.setNeedsDisplayForApp(app);
    }
}

void AppCommands::showSelectedApp()
{
    if (const AppRef app = _view.selectedApp()) {
        app->show();
    }
}

void AppCommands::hideSelectedApp()
{
    if (const AppRef app = _view.selectedApp()) {
        app->hide();
    }
}

void AppCommands::openNewWindowOfSelectedApp()
{
    if (const AppRef app = _view.selectedApp()) {
        openNewWindow(app);
    }
}

void AppCommands::quitSelectedApp()
{
    if (const AppRef app = _view.selectedApp()) {
        _appManager.quitApp(app);
    }
}

void AppCommands::undo()
{
    showStep(_appManager.undoLastChange(), OTIconView::tr("Undone for %1."));
}

void AppCommands::redo()
{
    showStep(_appManager.redoLastChange(), OTIconView::tr("Redone for %1."));
}

void AppCommands::showStep(const std::optional<ArrangementStep> &step, const QString &whatWasDone)
{
    if (!step) {
        QApplication::beep();
        return;
    }
    const AppRef app = _appManager.appForPath(step->paths.constFirst());
    const Coords place = _view.coordsOfApp(app);
    const bool isSeen = step->kind == ArrangementStep::Kind::Recolor
        ? GridInput::isInColorOrder()
        : step->isOfFavourites() == GridGroups::isFavourites(_view.groupShown());
    if (place.isEmpty() || !isSeen) {
        Q_EMIT NotificationCenter::defaultCenter().N_UserMessage(
            whatWasDone.arg(app->displayName()));
    }
    showPlace(app);
}

void AppCommands::showPlace(const AppRef &app)
{
    const Coords place = _view.coordsOfApp(app);
    if (!place.isEmpty()) {
        _view.selectCoordsByKeys(place);
        GridAccessible::placeChanged(&_view, app);
    }
}

void AppCommands::correctColor(const AppRef &app, const std::optional<SortedColor> &color)
{
    if (_view.coordsOfApp(app).isEmpty()) {
        return;
    }
    _appManager.correctColor(app, color);
    if (GridInput::isInColorOrder()) {
        showPlace(app);
    }
}

// Asking a file browser may take a while.
void AppCommands::showAppInFinder()
{
    if (const AppRef app = _view.selectedApp()) {
        _launches.start([app] { app->revealInFinder(); });
    }
}

// Where the click was, otherwise in the middle of the cell.
void AppCommands::showPoof()
{
    if (_view.selectedApp() && _appManager.desktop().compositing().isActive()) {
        const QPoint middle = _view.onScreen(_view.selectedCoords()).center();
        PoofEffect::show(_clickOnScreen.value_or(middle), &_view);
    }
}
