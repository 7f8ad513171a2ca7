#include "platform/freedesktop/bus/BusInterfaces.h"

#include "platform/freedesktop/base/Log.h"
#include "platform/freedesktop/bus/InstanceMessage.h"

#include <utility>

namespace {

// More than a user means to open at once.
constexpr qsizetype mostFiles = 10'000;

} // namespace

ApplicationInterface::ApplicationInterface(QObject *object, QDBusConnection connection, Hear hear)
    : QDBusAbstractAdaptor(object)
    , _connection(std::move(connection))
    , _hear(std::move(hear))
{ }

void ApplicationInterface::Activate(const QVariantMap &platformData, const QDBusMessage &message)
{
    _hear({ InstanceRequest::Verb::Activate, {}, InstanceMessage::stampOf(platformData) }, message);
}

void ApplicationInterface::Open(
    const QStringList &uris, const QVariantMap &platformData, const QDBusMessage &message)
{
    if (uris.size() > mostFiles) {
        refuse(message, QStringLiteral("%1 files are too many").arg(uris.size()));
        return;
    }
    _hear({ InstanceRequest::Verb::Open, InstanceMessage::filesOf(uris),
              InstanceMessage::stampOf(platformData) },
        message);
}

void ApplicationInterface::ActivateAction(const QString &action, const QVariantList &,
    const QVariantMap &platformData, const QDBusMessage &message)
{
    const auto verb = InstanceMessage::verbOf(action);
    if (!verb) {
        refuse(message, QStringLiteral("there is no action \"%1\"").arg(action.left(100)));
        return;
    }
    _hear({ *verb, {}, InstanceMessage::stampOf(platformData) }, message);
}

void ApplicationInterface::refuse(const QDBusMessage &message, const QString &reason)
{
    qCDebug(lcPlatform, "refused a call of another program: %s", qUtf8Printable(reason));
    message.setDelayedReply(true);
    _connection.send(message.createErrorReply(QDBusError::InvalidArgs, reason));
}

StatusInterface::StatusInterface(QObject *object, SingleInstance::Status status)
    : QDBusAbstractAdaptor(object)
    , _status(std::move(status))
{ }

QString StatusInterface::Status()
{
    return _status ? QString::fromUtf8(_status()) : QStringLiteral("{}");
}

LocalInterface::LocalInterface(const QDBusConnection &connection, QObject *parent)
    : QDBusAbstractInterface({}, QStringLiteral("/org/freedesktop/DBus/Local"),
        "org.freedesktop.DBus.Local", connection, parent)
{ }
