#include "platform/freedesktop/bus/BusAccount.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

#include <unistd.h>

namespace {

constexpr int longestWait = 5000;

const QString service = QStringLiteral("org.freedesktop.Accounts");

// The bus may have to start the service for it.
QDBusPendingCall call(const QString &path, const QString &interface, const QString &method,
    const QVariantList &arguments)
{
    QDBusMessage message = QDBusMessage::createMethodCall(service, path, interface, method);
    message.setArguments(arguments);
    return QDBusConnection::systemBus().asyncCall(message, longestWait);
}

template <typename Value>
void onReply(const QDBusPendingCall &pending, QObject *context,
    const std::function<void(const QDBusPendingReply<Value> &)> &receive)
{
    auto *const watcher = new QDBusPendingCallWatcher(pending, context);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, context, [watcher, receive] {
        watcher->deleteLater();
        receive(*watcher);
    });
}

void handOver(const QString &address, const Account::Receiver &receiver)
{
    const QString chosen = address.isEmpty() ? qEnvironmentVariable("EMAIL") : address;
    if (!chosen.isEmpty()) {
        receiver({ chosen });
    }
}

} // namespace

void BusAccount::findEmailAddresses(QObject *context, const Receiver &receiver) const
{
    const auto readAddress = [context, receiver](const QDBusPendingReply<QDBusObjectPath> &user) {
        if (user.isError()) {
            handOver({}, receiver);
            return;
        }
        const QDBusPendingCall property = call(user.value().path(),
            QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"),
            { QStringLiteral("org.freedesktop.Accounts.User"), QStringLiteral("Email") });
        onReply<QDBusVariant>(
            property, context, [receiver](const QDBusPendingReply<QDBusVariant> &address) {
                handOver(
                    address.isError() ? QString() : address.value().variant().toString(), receiver);
            });
    };
    const QDBusPendingCall user = call(QStringLiteral("/org/freedesktop/Accounts"), service,
        QStringLiteral("FindUserById"), { qlonglong(getuid()) });
    onReply<QDBusObjectPath>(user, context, readAddress);
}
