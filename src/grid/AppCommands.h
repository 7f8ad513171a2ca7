// What the user does to the applications of a grid: starts them, files them into groups, shows,
// hides and ends them.

#pragma once

#include "catalogue/AppList.h"
#include "catalogue/ArrangementHistory.h"
#include "grid/LaunchQueue.h"

#include <QPoint>

#include <functional>
#include <optional>

class GridHost;
class OTAppManager;
class OTIconView;
class QMimeData;
struct DropPlace;
struct ModifierKeys;

class AppCommands final
{
public:
    // All of them must outlive the commands.
    AppCommands(OTIconView &view, OTAppManager &appManager, GridHost &host)
        : _view(view)
        , _appManager(appManager)
        , _host(host)
    { }

    // Files an application into the favourites, at a place of the group that is shown.
    void moveApp(const AppRef &app, const DropPlace &place);
    // Launches on a thread of its own and lets the window hide. A favourite that is gone is looked
    // for instead. Files that are offered are opened by it, or nothing happens where it cannot take
    // them. Null does nothing.
    void launchApp(const AppRef &app, const QMimeData *withPasteboard = nullptr);
    // One more window of an application that runs; a launch where it does not, or has but one.
    void openNewWindow(const AppRef &app);
    // Does what the application itself offers under this identifier, likewise.
    void performAction(const AppRef &app, const QString &id);
    // What a click at a point of the screen means with these modifiers. Selects the application.
    void clicked(const AppRef &app, const ModifierKeys &modifiers, const QPoint &onScreen);

    // One step back or forth in what was arranged by hand. Selects the application, or says which
    // one it was where that is not shown. A beep where there is no such step.
    void undo();
    void redo();

    // Of the application in the selected cell; nothing where that is empty.
    void includeSelectedApp();
    void excludeSelectedApp();
    void addSelectedAppToUser();
    void addSelectedAppToUserNewGroup();
    void removeSelectedAppFromUser();
    void showSelectedApp();
    void hideSelectedApp();
    void openNewWindowOfSelectedApp();
    void quitSelectedApp();
    void showAppInFinder();

    // Says which of its colours counts; none for what is measured. Selects the application where it
    // stands then; nothing when it is no longer shown.
    void correctColor(const AppRef &app, const std::optional<SortedColor> &color);

private:
    void beginStart(const AppRef &app);
    // False from the job is a failure, after the user was told.
    void start(const AppRef &app, const std::function<bool()> &job);
    void showPlace(const AppRef &app);
    void showPoof();
    void showStep(const std::optional<ArrangementStep> &step, const QString &whatWasDone);

    OTIconView &_view;
    OTAppManager &_appManager;
    GridHost &_host;
    LaunchQueue _launches;
    // Where a click was that is being dealt with.
    std::optional<QPoint> _clickOnScreen;
};
