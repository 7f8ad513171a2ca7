#include "grid/AppMenu.h"

#include "catalogue/OTApp.h"
#include "catalogue/OTAppManager.h"
#include "grid/AppCommands.h"
#include "grid/ColorMenu.h"
#include "grid/OTIconView.h"
#include "grid/drawing/MenuColors.h"
#include "grid/layout/GridGroups.h"

#include <QMenu>

AppMenu::AppMenu(OTIconView &view, AppCommands &commands, const OTAppManager &appManager)
    : _view(view)
    , _commands(commands)
    , _appManager(appManager)
{ }

AppMenu::~AppMenu()
{
    if (_menu) {
        _menu->disconnect(this);
        delete _menu;
    }
}

bool AppMenu::isVisible() const
{
    return _menu && _menu->isVisible();
}

bool AppMenu::open(const QPoint &onScreen)
{
    if (_menu) {
        _menu->close();
    }
    std::unique_ptr<QMenu> menu = contextualMenu();
    if (!menu) {
        return false;
    }
    _menu = menu.release();
    // A menu of the view's window, so that the desktop places it above that.
    _menu->setParent(&_view, _menu->windowFlags());
    _menu->setAttribute(Qt::WA_DeleteOnClose);
    connect(_menu, &QMenu::aboutToShow, this, [this] { Q_EMIT isOpenChanged(true); });
    connect(_menu, &QMenu::aboutToHide, this, [this] { Q_EMIT isOpenChanged(false); });
    _menu->popup(onScreen);
    return true;
}

std::unique_ptr<QMenu> AppMenu::contextualMenu()
{
    const AppRef app = _view.selectedApp();
    if (!app) {
        return nullptr;
    }
    auto menu = std::make_unique<QMenu>(OTIconView::tr("Contextual Menu"));
    setMenuColors(*menu, _view.colors());
    addGroupItems(*menu, app);
    menu->addSeparator();
    add(*menu, OTIconView::tr("Show in Finder"), app, &AppCommands::showAppInFinder);
    addColors(*menu, app);
    if (_appManager.isAppRunning(app)) {
        addRunningItems(*menu, app);
    }
    addActions(*menu, app);
    return menu;
}

void AppMenu::addGroupItems(QMenu &menu, const AppRef &app)
{
    if (GridGroups::isFavourites(_view.groupShown())) {
        add(menu, OTIconView::tr("Move to New Group"), app,
            &AppCommands::addSelectedAppToUserNewGroup);
        add(menu, OTIconView::tr("Remove Favorite"), app, &AppCommands::removeSelectedAppFromUser);
        return;
    }
    if (indexOfApp(_appManager.excludedApps1D(), app) >= 0) {
        add(menu, OTIconView::tr("Include"), app, &AppCommands::includeSelectedApp);
    } else {
        add(menu, OTIconView::tr("Exclude"), app, &AppCommands::excludeSelectedApp);
    }
    if (indexOfApp(_appManager.userApps1D(), app) < 0) {
        menu.addSeparator();
        add(menu, OTIconView::tr("Add Favorite"), app, &AppCommands::addSelectedAppToUser);
        add(menu, OTIconView::tr("Add Favorite in New Group"), app,
            &AppCommands::addSelectedAppToUserNewGroup);
    }
}

void AppMenu::addRunningItems(QMenu &menu, const AppRef &app)
{
    menu.addSeparator();
    if (app->canOpenNewWindow()) {
        add(menu, OTIconView::tr("Open New Window"), app, &AppCommands::openNewWindowOfSelectedApp);
    }
    if (app->isVisible()) {
        add(menu, OTIconView::tr("Hide"), app, &AppCommands::hideSelectedApp);
    } else {
        add(menu, OTIconView::tr("Show"), app, &AppCommands::showSelectedApp);
    }
    add(menu, OTIconView::tr("Quit"), app, &AppCommands::quitSelectedApp);
}

// Of an icon that was not measured there is nothing to choose.
void AppMenu::addColors(QMenu &menu, const AppRef &app)
{
    QMenu *const colors = ColorMenu::of(
        *app, _view.devicePixelRatioF(), [this, app](const std::optional<SortedColor> &color) {
            _commands.correctColor(app, color);
        });
    if (colors) {
        setMenuColors(*colors, _view.colors());
        colors->setParent(&menu, colors->windowFlags());
        menu.addMenu(colors);
    }
}

// What the application itself offers, such as a new window; that of one that runs has an item
// already.
void AppMenu::addActions(QMenu &menu, const AppRef &app)
{
    QList<ApplicationActions::Action> actions = app->actions();
    if (_appManager.isAppRunning(app) && app->canOpenNewWindow()) {
        actions.removeIf([](const auto &action) { return action.isNewWindow; });
    }
    if (!actions.isEmpty()) {
        menu.addSeparator();
    }
    for (const ApplicationActions::Action &action : actions) {
        QString title = action.title;
        title.replace(QLatin1Char('&'), QLatin1String("&&"));
        menu.addAction(
            title, this, [this, app, id = action.id] { _commands.performAction(app, id); });
    }
}

void AppMenu::add(
    QMenu &menu, const QString &title, const AppRef &app, void (AppCommands::*command)())
{
    menu.addAction(title, this, [this, app, command] {
        // The cells may have been filled anew since.
        _view.selectKeepingKeys(_view.coordsOfApp(app));
        if (_view.selectedApp()) {
            (_commands.*command)();
        }
    });
}
