#include "shell/MainMenu.h"

#include "catalogue/OTAppManager.h"

#include <QAction>

#include <algorithm>
#include <utility>

namespace {

// With the names that the menu of an icon has for them.
QString nameOf(ArrangementStep::Kind kind)
{
    switch (kind) {
    case ArrangementStep::Kind::Move:
        return MainMenu::tr("Move");
    case ArrangementStep::Kind::Add:
        return MainMenu::tr("Add Favorite");
    case ArrangementStep::Kind::Remove:
        return MainMenu::tr("Remove Favorite");
    case ArrangementStep::Kind::Exclude:
        return MainMenu::tr("Exclude");
    case ArrangementStep::Kind::Include:
        return MainMenu::tr("Include");
    case ArrangementStep::Kind::Recolor:
        return MainMenu::tr("Colour");
    }
    return {};
}

} // namespace

MainMenu::MainMenu(Addresses known, QObject *parent)
    : QObject(parent)
{
    add(tr("Show or Hide Ortu"), Command::ShowHidePanel);
    _menu.addSeparator();
    addHistoryItems();
    _menu.addSeparator();
    add(tr("Preferences…"), Command::Preferences);
    showKey(Command::Preferences, Qt::CTRL | Qt::Key_Comma);
    add(tr("Exclude Applications…"), Command::ExcludeApps);
    _menu.addSeparator();
    add(tr("About Ortu"), Command::About);
    if (known.testFlag(Address::Updates)) {
        add(tr("Check for Updates…"), Command::CheckForUpdates);
    }
    add(tr("Welcome to Ortu"), Command::Welcome);
    add(tr("Ortu User Guide"), Command::UserGuide);
    add(tr("Rescan All Applications"), Command::RescanAllApps);
    if (known & (Address::HomePage | Address::Feedback)) {
        _menu.addSeparator();
    }
    if (known.testFlag(Address::HomePage)) {
        add(tr("Ortu Home Page"), Command::HomePage);
    }
    if (known.testFlag(Address::Feedback)) {
        add(tr("Send Feedback…"), Command::Feedback);
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
        { Command::Preferences, Command::ExcludeApps },
        { Command::About, Command::CheckForUpdates, Command::Welcome, Command::UserGuide,
            Command::RescanAllApps },
        { Command::HomePage, Command::Feedback },
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

void MainMenu::addHistoryItems()
{
    add(tr("Undo"), Command::Undo);
    add(tr("Redo"), Command::Redo);
    showKey(Command::Undo, Qt::CTRL | Qt::Key_Z);
    showKey(Command::Redo, Qt::CTRL | Qt::SHIFT | Qt::Key_Z);
    setHistoryItems({});
}

void MainMenu::showKey(Command command, const QKeySequence &key)
{
    QAction *const action = actionOf(command);
    action->setShortcut(key);
    action->setShortcutVisibleInContextMenu(true);
}

void MainMenu::followHistory(const OTAppManager &appManager)
{
    connect(&appManager, &OTAppManager::historyChanged, this,
        [this, &appManager] { setHistoryItems(appManager.history()); });
    setHistoryItems(appManager.history());
}

void MainMenu::setHistoryItems(const ArrangementHistory &history)
{
    const ArrangementStep *const undone = history.nextToUndo();
    const ArrangementStep *const redone = history.nextToRedo();
    QAction *const undo = actionOf(Command::Undo);
    undo->setText(undone ? tr("Undo %1").arg(nameOf(undone->kind)) : tr("Undo"));
    undo->setEnabled(undone);
    QAction *const redo = actionOf(Command::Redo);
    redo->setText(redone ? tr("Redo %1").arg(nameOf(redone->kind)) : tr("Redo"));
    redo->setEnabled(redone);
}

void MainMenu::setEnabled(Command command, bool isEnabled)
{
    if (QAction *const action = actionOf(command)) {
        action->setEnabled(isEnabled);
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
