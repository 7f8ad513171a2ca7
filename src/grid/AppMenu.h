// The menu of an application in a grid, and its life on the screen.

#pragma once

#include "catalogue/AppList.h"

#include <QObject>
#include <QPointer>

#include <memory>

class AppCommands;
class OTAppManager;
class OTIconView;
class QMenu;
class QPoint;

class AppMenu final : public QObject
{
    Q_OBJECT

public:
    // All of them must outlive the menu.
    AppMenu(OTIconView &view, AppCommands &commands, const OTAppManager &appManager);
    ~AppMenu() override;

    // The menu for the application in the selected cell, null where that is empty. It acts on that
    // application wherever it is then, and on nothing when it is gone.
    std::unique_ptr<QMenu> contextualMenu();

    // Opens it at a point of the screen in place of one that is open. False where there is none.
    bool open(const QPoint &onScreen);
    // From its opening until its end, and only while it is to be seen.
    bool exists() const { return !_menu.isNull(); }
    bool isVisible() const;

Q_SIGNALS:
    // The menu opens, or has begun to close.
    void isOpenChanged(bool isOpen);

private:
    void addGroupItems(QMenu &menu, const AppRef &app);
    void addRunningItems(QMenu &menu, const AppRef &app);
    void addColors(QMenu &menu, const AppRef &app);
    void addActions(QMenu &menu, const AppRef &app);
    void add(QMenu &menu, const QString &title, const AppRef &app, void (AppCommands::*command)());

    OTIconView &_view;
    AppCommands &_commands;
    const OTAppManager &_appManager;
    QPointer<QMenu> _menu;
};
