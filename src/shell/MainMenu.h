// The one menu with every command of the program. What else offers commands takes its titles from
// here.

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
    // Empty for a command that is not offered.
    QString titleOf(Command command) const;

Q_SIGNALS:
    void chosen(Command command);

private:
    void add(const QString &title, Command command);

    QMenu _menu;
};
