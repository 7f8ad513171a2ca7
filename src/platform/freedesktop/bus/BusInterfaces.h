// What the running program offers on the bus, two interfaces of one object, and what it gets to
// know of the bus itself.
//
// Calls with arguments of other types never get here; QtDBus refuses them.

#pragma once

#include "platform/SingleInstance.h"

#include <QDBusAbstractAdaptor>
#include <QDBusAbstractInterface>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QVariantList>
#include <QVariantMap>

#include <functional>

// As the desktop entry specification has it.
class ApplicationInterface final : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    using Hear = std::function<void(const InstanceRequest &, const QDBusMessage &call)>;

    // `hear` answers the call.
    ApplicationInterface(QObject *object, QDBusConnection connection, Hear hear);

public Q_SLOTS:
    void Activate(const QVariantMap &platformData, const QDBusMessage &message);
    void Open(
        const QStringList &uris, const QVariantMap &platformData, const QDBusMessage &message);
    // No action takes a parameter; those that are given are not looked at.
    void ActivateAction(const QString &action, const QVariantList &parameters,
        const QVariantMap &platformData, const QDBusMessage &message);

private:
    void refuse(const QDBusMessage &message, const QString &reason);

    QDBusConnection _connection;
    Hear _hear;
};

class StatusInterface final : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.ortu.Ortu")

public:
    StatusInterface(QObject *object, SingleInstance::Status status);

public Q_SLOTS:
    // A JSON object.
    QString Status();

private:
    SingleInstance::Status _status;
};

// What the bus library says about a connection.
class LocalInterface final : public QDBusAbstractInterface
{
    Q_OBJECT

public:
    LocalInterface(const QDBusConnection &connection, QObject *parent);

Q_SIGNALS:
    void Disconnected();
};
