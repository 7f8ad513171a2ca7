// A key that the desktop binds for us, for the length of this object, by its portal:
// https://flatpak.github.io/xdg-desktop-portal/docs/doc-org.freedesktop.portal.GlobalShortcuts.html
//
// Which key it is the desktop decides, and may ask the user. Nothing here waits: every question to
// the portal is answered by a signal, or never.

#pragma once

#include "platform/freedesktop/bus/BusConnection.h"

#include <QDBusMessage>
#include <QObject>
#include <QString>
#include <QVariantList>
#include <QVariantMap>

#include <functional>

struct PortalBinding;

class PortalShortcut final : public QObject
{
    Q_OBJECT

public:
    inline static const QString portal = QStringLiteral("org.freedesktop.portal.Desktop");

    // Asks at once. The trigger is what is proposed to the desktop; empty to propose none.
    explicit PortalShortcut(QString trigger);
    // Gives the key back.
    ~PortalShortcut() override;

    // Why there is no key, in a few words for people.
    static QString absence();

Q_SIGNALS:
    void bound();
    // Also when it was bound before; it may be bound again.
    void failed(const QString &whyNot);
    // The time is in milliseconds of some clock.
    void activated(qulonglong time, const QVariantMap &options);
    void deactivated();

private:
    using Take = std::function<void(const QDBusMessage &reply)>;
    using TakeResults = std::function<void(const QVariantMap &results)>;

    // In this order.
    void introduce();
    void findOwner();
    void createSession();
    void bindShortcut();
    void takeShortcuts(const QList<PortalBinding> &shortcuts);

    void listen();
    void call(const QString &interface, const QString &method, const QVariantList &arguments,
        const Take &take);
    void send(const QDBusMessage &message, const Take &take);
    void request(const QString &method, QVariantList arguments, QVariantMap options,
        const TakeResults &take);
    void close(const QString &path, const char *interface);
    QString pathFor(const char *kind, const QString &token);

    // One for each: a portal that was started anew while its backend went on would meet the session
    // of before, were it made by the same connection again.
    BusConnection _bus;
    QString _trigger;
    // The portal's own name on the bus, of which there is only ever one.
    QString _owner;
    QString _session;
    // What the portal has not answered yet; empty for nothing.
    QString _request;
};
