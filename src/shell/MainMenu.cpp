#include "shell/MainMenu.h"

#include <QAction>

MainMenu::MainMenu(HomePage homePage, QObject *parent)
    : QObject(parent)
{
    add(tr("Show or Hide Ortu"), Command::ShowHidePanel);
    _menu.addSeparator();
    add(tr("About Ortu"), Command::About);
    add(tr("Rescan All Applications"), Command::RescanAllApps);
    if (homePage == HomePage::Known) {
        _menu.addSeparator();
        add(tr("Ortu Home Page"), Command::HomePage);
    }
    _menu.addSeparator();
    add(tr("Quit Ortu"), Command::Quit);
}

QString MainMenu::titleOf(Command command) const
{
    for (const QAction *const action : _menu.actions()) {
        if (action->data() == QVariant(int(command))) {
            return action->text();
        }
    }
    return {};
}

void MainMenu::add(const QString &title, Command command)
{
    QAction *const action = _menu.addAction(title);
    action->setData(int(command));
    connect(action, &QAction::triggered, this, [this, command] { Q_EMIT chosen(command); });
}
