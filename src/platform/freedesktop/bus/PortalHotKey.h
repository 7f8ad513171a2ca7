// The hot key of a session that lets no program take keys: the desktop's portal binds it.
//
// The key is a proposal. The desktop may ask the user, and may bind another key or none; what it
// has bound once for us it keeps, and changes in its own settings.
//
// registerKey() cannot wait for that and answers that the key was taken. When it was not, because
// there is no portal or it refuses, gives the key back, goes away, or is silent for too long,
// registrationChanged() says so. An answer that comes late still counts, and a portal that comes
// back is asked again.

#pragma once

#include "platform/HotKey.h"
#include "platform/freedesktop/bus/BusConnection.h"

#include <QDBusServiceWatcher>
#include <QElapsedTimer>
#include <QTimer>
#include <QVariantMap>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

class LocalInterface;
class PortalShortcut;

class PortalHotKey final : public HotKey
{
    Q_OBJECT

public:
    using NamesOfKey = std::function<QStringList(quint32 nativeScanCode)>;

    // Time enough to start a portal and for most users to answer a question.
    static constexpr std::chrono::seconds MaxSilence { 30 };

    // The desktops are those of the session, for settingsAdvice(); the names of a key come from the
    // keyboard, of which a portal knows nothing.
    PortalHotKey(QStringList desktops, NamesOfKey namesOfKey,
        std::chrono::milliseconds maxSilence = MaxSilence);
    ~PortalHotKey() override;

    QString registerKey(const HotKeyCombination &combination) override;
    void unregisterKey() override;
    QStringList namesOfKey(quint32 nativeScanCode) const override;
    QString settingsAdvice() const override;

private:
    void ask();
    void settle(const QString &whyNot);
    void lose();
    void handleOwnerChange(const QString &newOwner);
    void handleActivation(qulonglong time, const QVariantMap &options);

    const QStringList _desktops;
    const NamesOfKey _namesOfKey;
    // On which the portal is seen to come and go.
    BusConnection _bus;
    QDBusServiceWatcher _owners;
    std::unique_ptr<LocalInterface> _end;
    // What is proposed, which may be nothing; no value while no key is wanted.
    std::optional<QString> _trigger;
    std::unique_ptr<PortalShortcut> _shortcut;
    // Why there is no key, as it was told last.
    QString _whyNot;
    QTimer _silence { this };
    // Since the last activation that was not followed by a deactivation.
    QElapsedTimer _held;
};
