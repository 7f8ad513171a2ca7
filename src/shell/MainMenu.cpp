#include "shell/MainMenu.h"

#include <QAction>

#include <algorithm>
#include <utility>

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
    fillStatusItemMenu();
}

// A separator before each new line; of some lines no command is offered.
void MainMenu::fillStatusItemMenu()
{
    static const QList<QList<Command>> lines {
        { Command::ShowHidePanel },
        { Command::About, Command::RescanAllApps },
        { Command::HomePage },
        { Command::Quit },
    };
    for (const QList<Command> &line : lines) {
        bool isFirstOfLine = !_statusItemMenu.isEmpty();
        for (const Command command : line) {
            if (QAction *const action = actionOf(command)) {
                if (std::exchange(isFirstOfLine, false)) {
                    _statusItemMenu.addSeparator();
                }
                _statusItemMenu.addAction(action);
            }
        }
    }
}

QAction *MainMenu::actionOf(Command command) const
{
    const QList<QAction *> actions = _menu.actions();
    const auto found = std::find_if(actions.cbegin(), actions.cend(),
        [command](const QAction *action) { return action->data() == QVariant(int(command)); });
    return found == actions.cend() ? nullptr : *found;
}

void MainMenu::add(const QString &title, Command command)
{
    QAction *const action = _menu.addAction(title);
    action->setData(int(command));
    connect(action, &QAction::triggered, this, [this, command] { Q_EMIT chosen(command); });
}
