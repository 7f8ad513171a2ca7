#include "shell/triggers/Triggers.h"

#include "platform/Desktop.h"
#include "shell/base/Log.h"
#include "shell/triggers/KeyTable.h"
#include "shell/triggers/TriggerKeys.h"
#include "support/NotificationCenter.h"
#include "support/Translations.h"
#include "support/UserDefaults.h"

#include <QGuiApplication>
#include <QScreen>

#include <algorithm>
#include <limits>
#include <utility>

namespace {

// A number that is too large is not to become another one.
int number(const QString &key)
{
    constexpr qint64 least = std::numeric_limits<int>::min();
    constexpr qint64 most = std::numeric_limits<int>::max();
    return int(std::clamp(UserDefaults::standard().integerForKey(key), least, most));
}

} // namespace

Triggers::Triggers(Desktop &desktop, QMenu &statusItemMenu, Action action, Action hotKeyAction)
    : _desktop(desktop)
    , _statusItemMenu(statusItemMenu)
    , _action(std::move(action))
    , _hotKeyAction(std::move(hotKeyAction))
{ }

void Triggers::start()
{
    if (std::exchange(_isStarted, true)) {
        return;
    }
    const HotKey &hotKey = _desktop.hotKey();
    connect(&hotKey, &HotKey::pressed, this, _hotKeyAction);
    connect(&hotKey, &HotKey::registrationChanged, this, &Triggers::takeHotKeyProblem);
    registerHotKey();
    connect(&_desktop.modifierTap(), &ModifierTap::changed, &NotificationCenter::defaultCenter(),
        &NotificationCenter::N_EventFlagsChanged);
    setupEventTap();
    connect(&_desktop.statusItem(), &StatusItem::isShownChanged, this,
        &Triggers::statusItemShownChanged);
    updateStatusBar();
    connect(
        &UserDefaults::standard(), &UserDefaults::changed, this, &Triggers::preferenceDidChange);
    for (const auto signal :
        { &QGuiApplication::primaryScreenChanged, &QGuiApplication::screenRemoved }) {
        connect(qGuiApp, signal, this, &Triggers::applicationDidChangeScreenParameters);
    }
    watchPrimaryScreen();
    updateCursorHotSpot();
    // What could not be told before they were there.
    Q_EMIT statusItemShownChanged();
}

// The status item says that it goes; those who would hear it through this are gone in part.
Triggers::~Triggers()
{
    blockSignals(true);
}

void Triggers::registerDefaults()
{
    UserDefaults::standard().registerDefaults({
        { TriggerKeys::hotKeyCode, 48 },
        { TriggerKeys::hotKeyModifiers, 4096 },
        { TriggerKeys::showAppInStatusBar, true },
        { TriggerKeys::statusBarTogglesWindow, true },
        { TriggerKeys::cursorHotSpotLocation, 0 },
        { QStringLiteral("highlightHotSpots"), false },
        { QStringLiteral("cursorHotSpotDelay"), 0.35 },
    });
}

void Triggers::preferenceDidChange(const QString &key)
{
    if (key == TriggerKeys::statusBarTogglesWindow) {
        updateStatusBar();
    } else if (key == TriggerKeys::cursorHotSpotLocation) {
        updateCursorHotSpot();
    } else if (key == TriggerKeys::hotKeyCode || key == TriggerKeys::hotKeyModifiers) {
        if (!_isSettingHotKey) {
            Q_EMIT hotKeyStringChanged();
            registerHotKey();
        }
    }
}

void Triggers::registerHotKey()
{
    if (!_isStarted) {
        return;
    }
    HotKey &hotKey = _desktop.hotKey();
    if (!isHotKeyWanted()) {
        hotKey.unregisterKey();
        setHotKeyProblem(QStringLiteral(QT_TRANSLATE_NOOP("Reason", "no hot key is chosen")));
        return;
    }
    const auto combination = KeyTable().combination(
        number(TriggerKeys::hotKeyCode), number(TriggerKeys::hotKeyModifiers));
    if (!combination) {
        hotKey.unregisterKey();
    }
    takeHotKeyProblem(combination ? hotKey.registerKey(*combination)
                                  : QStringLiteral(QT_TRANSLATE_NOOP(
                                      "Reason", "the chosen key is not in the table of keys")));
}

bool Triggers::setHotKeyProblem(const QString &problem)
{
    if (problem == _hotKeyProblem) {
        return false;
    }
    _hotKeyProblem = problem;
    Q_EMIT hotKeyProblemChanged();
    return true;
}

void Triggers::takeHotKeyProblem(const QString &whyNot)
{
    const bool isNews = setHotKeyProblem(whyNot);
    if (whyNot.isEmpty()) {
        return;
    }
    if (isNews) {
        const bool hasName =
            KeyTable()
                .combination(number(TriggerKeys::hotKeyCode), number(TriggerKeys::hotKeyModifiers))
                .has_value();
        Q_EMIT NotificationCenter::defaultCenter().N_UserMessage(
            tr("%1 does not summon Ortu: %2.")
                .arg(hasName ? hotKeyString() : tr("The hot key"), Translations::ofReason(whyNot)));
    }
    qCWarning(lcShell,
        "no hot key: %s; 'ortu --toggle' can be bound to a key in the desktop's settings",
        qUtf8Printable(whyNot));
}

void Triggers::chooseHotKey(int hotKeyCode, int hotKeyModifiers)
{
    _isSettingHotKey = true;
    UserDefaults::standard().setObject(TriggerKeys::hotKeyModifiers, hotKeyModifiers);
    UserDefaults::standard().setObject(TriggerKeys::hotKeyCode, hotKeyCode);
    _isSettingHotKey = false;
    Q_EMIT hotKeyStringChanged();
}

QString Triggers::hotKeyString() const
{
    return KeyTable().hotKeyString(
        number(TriggerKeys::hotKeyCode), number(TriggerKeys::hotKeyModifiers));
}

QString Triggers::hotKeyAdvice() const
{
    const bool isMissed = isHotKeyWanted() && !_hotKeyProblem.isEmpty();
    return isMissed ? _desktop.hotKey().settingsAdvice() : QString();
}

bool Triggers::isHotKeyWanted()
{
    return number(TriggerKeys::hotKeyCode) >= 0;
}

bool Triggers::isHotSpotWanted()
{
    return number(TriggerKeys::cursorHotSpotLocation) > 0;
}

bool Triggers::isStatusItemWanted()
{
    return UserDefaults::standard().boolForKey(TriggerKeys::showAppInStatusBar);
}

bool Triggers::isStatusItemShown() const
{
    return _isStarted && isStatusItemWanted() && _desktop.statusItem().isShown();
}

void Triggers::updateStatusBar()
{
    if (!_isStarted) {
        return;
    }
    _appStatusItem.reset();
    if (isStatusItemWanted()) {
        const bool toggles =
            UserDefaults::standard().boolForKey(TriggerKeys::statusBarTogglesWindow);
        _appStatusItem = std::make_unique<OTStatusItemView>(_desktop.statusItem(), _statusItemMenu,
            _action,
            toggles ? OTStatusItemView::Click::PerformsAction : OTStatusItemView::Click::OpensMenu);
    }
}

void Triggers::setupEventTap()
{
    if (!_desktop.modifierTap().setUp()) {
        qCWarning(lcShell, "Failed to create event tap for modifier keys");
    }
}

void Triggers::watchPrimaryScreen()
{
    if (_primaryScreen) {
        _primaryScreen->disconnect(this);
    }
    _primaryScreen = QGuiApplication::primaryScreen();
    if (_primaryScreen) {
        connect(_primaryScreen, &QScreen::geometryChanged, this,
            &Triggers::applicationDidChangeScreenParameters);
    }
}

void Triggers::applicationDidChangeScreenParameters()
{
    watchPrimaryScreen();
    updateCursorHotSpot();
}

void Triggers::updateCursorHotSpot()
{
    _hotSpotWin.reset();
    const QRectF place = OTHotSpotWindow::hotSpotRect(
        number(TriggerKeys::cursorHotSpotLocation), OTHotSpotWindow::screenFrame());
    if (!place.isNull()) {
        _hotSpotWin = std::make_unique<OTHotSpotWindow>(_desktop.hotSpot(), place, _action);
    }
}
