#include "platform/freedesktop/bus/PortalHotKey.h"

#include "platform/freedesktop/base/ShortcutSettings.h"
#include "platform/freedesktop/bus/BusInterfaces.h"
#include "platform/freedesktop/bus/InstanceMessage.h"
#include "platform/freedesktop/bus/PortalShortcut.h"
#include "platform/freedesktop/bus/PortalTrigger.h"

#include <utility>

using namespace std::chrono_literals;

namespace {

// Longer than a key rests before it repeats.
constexpr std::chrono::milliseconds longestPauseOfRepeat = 1s;
// Between a press and the signal that tells of it.
constexpr std::chrono::milliseconds longestDelay = 10s;

// The portal does not say which clock its time is from. Compositors and the X servers that run on
// them count milliseconds of the steady clock; what is from another one would only mislead the
// window manager.
quint32 displayTime(qulonglong time)
{
    const auto now = std::chrono::duration_cast<std::chrono::milliseconds>(
        std::chrono::steady_clock::now().time_since_epoch());
    const quint32 age = quint32(now.count()) - quint32(time);
    return age <= quint32(longestDelay.count()) ? quint32(time) : 0;
}

} // namespace

PortalHotKey::PortalHotKey(
    QStringList desktops, NamesOfKey namesOfKey, std::chrono::milliseconds maxSilence)
    : _desktops(std::move(desktops))
    , _namesOfKey(std::move(namesOfKey))
{
    _silence.setSingleShot(true);
    _silence.setInterval(maxSilence);
    connect(&_silence, &QTimer::timeout, this, [this] {
        settle(QStringLiteral(QT_TRANSLATE_NOOP("Reason", "the desktop has not answered yet")));
    });
    _owners.setWatchMode(QDBusServiceWatcher::WatchForOwnerChange);
    connect(&_owners, &QDBusServiceWatcher::serviceOwnerChanged, this,
        [this](const QString &, const QString &, const QString &newOwner) {
            handleOwnerChange(newOwner);
        });
}

PortalHotKey::~PortalHotKey() = default;

QString PortalHotKey::registerKey(const HotKeyCombination &combination)
{
    unregisterKey();
    const QDBusConnection bus = _bus.get();
    if (!bus.isConnected()) {
        return PortalShortcut::absence();
    }
    if (!_end) {
        _owners.setConnection(bus);
        _owners.addWatchedService(PortalShortcut::portal);
        _end = std::make_unique<LocalInterface>(bus, nullptr);
        connect(_end.get(), &LocalInterface::Disconnected, this, &PortalHotKey::lose);
    }
    _trigger = portalTrigger(combination);
    ask();
    return {};
}

void PortalHotKey::unregisterKey()
{
    _silence.stop();
    _shortcut.reset();
    _trigger.reset();
    _whyNot.clear();
}

QStringList PortalHotKey::namesOfKey(quint32 nativeScanCode) const
{
    return _namesOfKey(nativeScanCode);
}

QString PortalHotKey::settingsAdvice() const
{
    return shortcutAdvice(_desktops);
}

void PortalHotKey::ask()
{
    _held.invalidate();
    _shortcut = std::make_unique<PortalShortcut>(*_trigger);
    connect(_shortcut.get(), &PortalShortcut::bound, this, [this] { settle({}); });
    connect(_shortcut.get(), &PortalShortcut::failed, this, &PortalHotKey::settle);
    connect(_shortcut.get(), &PortalShortcut::activated, this, &PortalHotKey::handleActivation);
    connect(_shortcut.get(), &PortalShortcut::deactivated, this, [this] { _held.invalidate(); });
    _silence.start();
}

void PortalHotKey::settle(const QString &whyNot)
{
    _silence.stop();
    if (whyNot != _whyNot) {
        _whyNot = whyNot;
        Q_EMIT registrationChanged(whyNot);
    }
}

void PortalHotKey::lose()
{
    _shortcut.reset();
    if (_trigger) {
        settle(
            QStringLiteral(QT_TRANSLATE_NOOP("Reason", "the desktop no longer offers such keys")));
    }
}

// One that comes may be the answer to our own question, which the bus starts it for; that is then
// asked again, and the portal knows us already.
void PortalHotKey::handleOwnerChange(const QString &newOwner)
{
    if (newOwner.isEmpty()) {
        lose();
    } else if (_trigger) {
        ask();
    }
}

// Some desktops tell of a held key each time that it repeats.
void PortalHotKey::handleActivation(qulonglong time, const QVariantMap &options)
{
    const bool isRepeat = _held.isValid() && !_held.hasExpired(longestPauseOfRepeat.count());
    _held.start();
    if (isRepeat) {
        return;
    }
    ActivationStamp stamp = InstanceMessage::stampOf({ { QStringLiteral("activation-token"),
        options.value(QStringLiteral("activation_token")) } });
    if (stamp.time == 0) {
        stamp.time = displayTime(time);
    }
    Q_EMIT pressed(stamp);
}
