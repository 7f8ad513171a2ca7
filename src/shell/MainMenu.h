// The menus with the commands of the program: the panel's, and that of the status item.

#pragma once

#include "catalogue/ArrangementHistory.h"

#include <QMenu>
#include <QObject>
#include <QString>

class OTAppManager;

class MainMenu : public QObject
{
    Q_OBJECT

public:
    enum class Command {
        ShowHidePanel,
        Undo,
        Redo,
        Preferences,
        ExcludeApps,
        About,
        CheckForUpdates,
        Welcome,
        UserGuide,
        RescanAllApps,
        HomePage,
        Feedback,
        Quit
    };

    // There is no command for a page or a service that the program knows no address of.
    enum class Address { HomePage = 1, Feedback = 2, Updates = 4 };
    Q_DECLARE_FLAGS(Addresses, Address)
    explicit MainMenu(Addresses known, QObject *parent = nullptr);

    QMenu &menu() { return _menu; }
    // The same commands in the shorter order of the status item.
    QMenu &statusItemMenu() { return _statusItemMenu; }

    // From now on the menu says what is undone and redone next. The keys beside these items are
    // only shown: a menu of no window triggers nothing by key, and the grid takes them.
    void followHistory(const OTAppManager &appManager);

    // A command that cannot be given now is grey. Nothing happens when the menu has no such
    // command.
    void setEnabled(Command command, bool isEnabled);

Q_SIGNALS:
    void chosen(Command command);

private:
    void fillStatusItemMenu();
    void addHistoryItems();
    void showKey(Command command, const QKeySequence &key);
    void setHistoryItems(const ArrangementHistory &history);
    QAction *actionOf(Command command) const;
    void add(const QString &title, Command command);

    QMenu _menu;
    QMenu _statusItemMenu;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(MainMenu::Addresses)
