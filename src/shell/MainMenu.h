// The menus with the commands of the program: the panel's, and that of the status item.

#pragma once

#include <QMenu>
#include <QObject>
#include <QString>

class MainMenu : public QObject
{
    Q_OBJECT

public:
    enum class Command { ShowHidePanel, About, RescanAllApps, HomePage, Quit };

    // Without a home page there is no command for it.
    enum class HomePage { Known, Unknown };
    explicit MainMenu(HomePage homePage, QObject *parent = nullptr);

    QMenu &menu() { return _menu; }
    // The same commands in the shorter order of the status item.
    QMenu &statusItemMenu() { return _statusItemMenu; }

Q_SIGNALS:
    void chosen(Command command);

private:
    void fillStatusItemMenu();
    QAction *actionOf(Command command) const;
    void add(const QString &title, Command command);

    QMenu _menu;
    QMenu _statusItemMenu;
};
