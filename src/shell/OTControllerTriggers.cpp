// What summons the panel from outside: hot key, hot spot, status item; and the modifier keys of the
// session.

#include "platform/Desktop.h"
#include "shell/OTController.h"
#include "shell/base/Log.h"
#include "shell/panel/OTWindow.h"
#include "shell/triggers/KeyTable.h"
#include "shell/triggers/OTHotSpotWindow.h"
#include "shell/triggers/OTStatusItemView.h"
#include "shell/triggers/TriggerKeys.h"
#include "support/NotificationCenter.h"
#include "support/UserDefaults.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWindow>

#include <algorithm>
#include <limits>
#include <utility>

namespace {

// The commands of the status item, in its order; a separator before each new line of them.
const QList<QList<MainMenu::Command>> &statusItemCommands()
{
    using Command = MainMenu::Command;
    static const QList<QList<Command>> commands {
        { Command::ShowHidePanel },
        { Command::About, Command::RescanAllApps },
        { Command::HomePage },
        { Command::Quit },
    };
    return commands;
}

// A number that is too large is not to become another one.
int number(const QString &key)
{
    constexpr qint64 least = std::numeric_limits<int>::min();
    constexpr qint64 most = std::numeric_limits<int>::max();
    return int(std::clamp(UserDefaults::standard().integerForKey(key), least, most));
}

} // namespace

void OTController::connectTriggers()
{
    const HotKey &hotKey = _desktop.hotKey();
    connect(&hotKey, &HotKey::pressed, this, &OTController::hotKeyPressed);
    connect(&hotKey, &HotKey::registrationChanged, this, &OTController::takeHotKeyProblem);
    connect(&_desktop.modifierTap(), &ModifierTap::changed, &NotificationCenter::defaultCenter(),
        &NotificationCenter::N_EventFlagsChanged);
    connect(&_desktop.statusItem(), &StatusItem::isShownChanged, this,
        &OTController::hasMenuAccessChanged);
    for (const auto signal :
        { &QGuiApplication::primaryScreenChanged, &QGuiApplication::screenRemoved }) {
        connect(qGuiApp, signal, this, &OTController::applicationDidChangeScreenParameters);
    }
    watchPrimaryScreen();
}

void OTController::watchPrimaryScreen()
{
    if (_primaryScreen) {
        _primaryScreen->disconnect(this);
    }
    _primaryScreen = QGuiApplication::primaryScreen();
    if (_primaryScreen) {
        connect(_primaryScreen, &QScreen::geometryChanged, this,
            &OTController::applicationDidChangeScreenParameters);
    }
}

void OTController::applicationDidChangeScreenParameters()
{
    watchPrimaryScreen();
    updateCursorHotSpot();
}

void OTController::registerHotKey()
{
    HotKey &hotKey = _desktop.hotKey();
    const int code = number(TriggerKeys::hotKeyCode);
    if (code < 0) {
        hotKey.unregisterKey();
        _hotKeyProblem = tr("no hot key is chosen");
        return;
    }
    const auto combination = KeyTable().combination(code, number(TriggerKeys::hotKeyModifiers));
    if (!combination) {
        hotKey.unregisterKey();
    }
    takeHotKeyProblem(combination ? hotKey.registerKey(*combination)
                                  : tr("the chosen key is not in the table of keys"));
}

// What is typed next is meant for the panel that comes up.
void OTController::hotKeyPressed(const ActivationStamp &stamp)
{
    showHideMainWindow(stamp);
    if (_mainWindow.isShown()) {
        _desktop.hotKey().handKeysTo(*_mainWindow.windowHandle());
    }
}

void OTController::takeHotKeyProblem(const QString &whyNot)
{
    const bool isNews = whyNot != _hotKeyProblem;
    _hotKeyProblem = whyNot;
    if (!whyNot.isEmpty()) {
        if (isNews) {
            Q_EMIT NotificationCenter::defaultCenter().N_UserMessage(
                tr("%1 does not summon Ortu: %2.").arg(hotKeyString(), whyNot));
        }
        qCWarning(lcShell,
            "no hot key: %s; 'ortu --toggle' can be bound to a key in the desktop's settings",
            qUtf8Printable(whyNot));
    }
}

void OTController::setHotKey(int hotKeyCode, int hotKeyModifiers)
{
    _isSettingHotKey = true;
    _userDefaults.setObject(TriggerKeys::hotKeyModifiers, hotKeyModifiers);
    _userDefaults.setObject(TriggerKeys::hotKeyCode, hotKeyCode);
    _isSettingHotKey = false;
    Q_EMIT hotKeyStringChanged();
    alertIfNoAccess();
    registerHotKey();
}

QString OTController::hotKeyString() const
{
    return KeyTable().hotKeyString(
        number(TriggerKeys::hotKeyCode), number(TriggerKeys::hotKeyModifiers));
}

void OTController::setupEventTap()
{
    if (!_desktop.modifierTap().setUp()) {
        qCWarning(lcShell, "Failed to create event tap for modifier keys");
    }
}

void OTController::updateCursorHotSpot()
{
    enableCursorHotSpot(number(TriggerKeys::cursorHotSpotLocation));
}

void OTController::enableCursorHotSpot(int location)
{
    _hotSpotWin.reset();
    const QRectF place = OTHotSpotWindow::hotSpotRect(location, OTHotSpotWindow::screenFrame());
    if (!place.isNull()) {
        _hotSpotWin = std::make_unique<OTHotSpotWindow>(_desktop.hotSpot(), place,
            [this](const ActivationStamp &stamp) { showHideMainWindow(stamp); });
    }
}

void OTController::updateStatusBar()
{
    _appStatusItem.reset();
    if (!_userDefaults.boolForKey(TriggerKeys::showAppInStatusBar)) {
        return;
    }
    if (_statusItemMenu.isEmpty()) {
        fillStatusItemMenu();
    }
    const bool toggles = _userDefaults.boolForKey(TriggerKeys::statusBarTogglesWindow);
    _appStatusItem = std::make_unique<OTStatusItemView>(
        _desktop.statusItem(), _statusItemMenu,
        [this](const ActivationStamp &stamp) { showHideMainWindow(stamp); },
        toggles ? OTStatusItemView::Click::PerformsAction : OTStatusItemView::Click::OpensMenu);
}

// Of some lines no command is offered.
void OTController::fillStatusItemMenu()
{
    for (const QList<MainMenu::Command> &commands : statusItemCommands()) {
        bool isFirstOfLine = !_statusItemMenu.isEmpty();
        for (const MainMenu::Command command : commands) {
            const QString title = _mainMenu.titleOf(command);
            if (title.isEmpty()) {
                continue;
            }
            if (std::exchange(isFirstOfLine, false)) {
                _statusItemMenu.addSeparator();
            }
            const QAction *const action = _statusItemMenu.addAction(title);
            connect(
                action, &QAction::triggered, this, [this, command] { performCommand(command); });
        }
    }
}
