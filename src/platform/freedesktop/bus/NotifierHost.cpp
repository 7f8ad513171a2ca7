#include "platform/freedesktop/bus/NotifierHost.h"

#include <QDBusAbstractInterface>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

namespace {

const QString registrar = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString registrarPath = QStringLiteral("/StatusNotifierWatcher");

} // namespace

// What the registrar announces. without a name for it, since looking that up is a
// question to wait for.
class NotifierSignals final : public QDBusAbstractInterface
{
    Q_OBJECT

public:
    explicit NotifierSignals(const QDBusConnection &connection)
        : QDBusAbstractInterface(
            {}, registrarPath, "org.kde.StatusNotifierWatcher", connection, /*parent=*/nullptr)
    { }

Q_SIGNALS:
    void StatusNotifierHostRegistered(); // NOLINT(readability-identifier-naming)
    void StatusNotifierHostUnregistered(); // NOLINT(readability-identifier-naming)
};

NotifierHost::NotifierHost(QObject *parent)
    : QObject(parent)
{
    const QDBusConnection bus = _bus.get();
    if (!bus.isConnected()) {
        _state = State::Absent;
        return;
    }
    _owners.setConnection(bus);
    _owners.setWatchMode(QDBusServiceWatcher::WatchForOwnerChange);
    _owners.addWatchedService(registrar);
    connect(&_owners, &QDBusServiceWatcher::serviceOwnerChanged, this,
        [this](const QString &, const QString &, const QString &newOwner) {
            setState(newOwner.isEmpty() ? State::Absent : State::Unknown);
            ask();
        });
    _signals = std::make_unique<NotifierSignals>(bus);
    connect(
        _signals.get(), &NotifierSignals::StatusNotifierHostRegistered, this, &NotifierHost::ask);
    connect(
        _signals.get(), &NotifierSignals::StatusNotifierHostUnregistered, this, &NotifierHost::ask);
    ask();
}

NotifierHost::~NotifierHost() = default;

// Only the last question counts.
void NotifierHost::ask()
{
    QDBusMessage question = QDBusMessage::createMethodCall(registrar, registrarPath,
        QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    question << registrar << QStringLiteral("IsStatusNotifierHostRegistered");
    question.setAutoStartService(false);
    delete _question;
    _question = new QDBusPendingCallWatcher(_bus.get().asyncCall(question), this);
    connect(_question, &QDBusPendingCallWatcher::finished, this, &NotifierHost::take);
}

void NotifierHost::take(QDBusPendingCallWatcher *answer)
{
    const QDBusPendingReply<QDBusVariant> reply = *answer;
    const QDBusError::ErrorType error =
        reply.isError() ? reply.error().type() : QDBusError::NoError;
    answer->deleteLater();
    _question = nullptr;
    if (error == QDBusError::NoReply || error == QDBusError::Timeout
        || error == QDBusError::TimedOut) {
        // It is there, and may be slow with everything else.
        setState(State::Unknown);
    } else {
        setState(
            !reply.isError() && reply.value().variant().toBool() ? State::Present : State::Absent);
    }
}

void NotifierHost::setState(State state)
{
    if (state != _state) {
        _state = state;
        Q_EMIT stateChanged();
    }
}

#include "NotifierHost.moc"
