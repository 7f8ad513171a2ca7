#include "platform/freedesktop/bus/BusInstance.h"

#include "platform/freedesktop/base/Log.h"
#include "platform/freedesktop/bus/BusInterfaces.h"
#include "platform/freedesktop/bus/BusSilence.h"
#include "platform/freedesktop/bus/InstanceMessage.h"
#include "platform/freedesktop/bus/SessionBus.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>

#include <algorithm>

namespace {

using namespace std::chrono_literals;

constexpr QLatin1String busService("org.freedesktop.DBus");

// Between two looks for a bus that is gone; each wait is twice the one before.
constexpr std::chrono::milliseconds firstWait = 50ms;
constexpr std::chrono::milliseconds longestWait = 10s;
// A bus that says nothing for so long is not waited for, as the main thread stands still.
constexpr std::chrono::milliseconds longestSilence = 200ms;

// Buses do not agree on how to say that a name has no owner.
bool isNobodyThere(const QDBusMessage &answer)
{
    return answer.errorName() == QLatin1String("org.freedesktop.DBus.Error.NameHasNoOwner")
        || QDBusError(answer).type() == QDBusError::ServiceUnknown;
}

InstanceAnswer failure(const QString &reason)
{
    return { InstanceAnswer::Outcome::Failed, reason };
}

InstanceAnswer strangersAnswer()
{
    return failure(QStringLiteral("%1 on the session bus belongs to another program")
                       .arg(QLatin1String(InstanceMessage::service)));
}

} // namespace

BusInstance::BusInstance(std::chrono::milliseconds patience)
    : _patience(patience)
{
    _wait.setSingleShot(true);
    connect(&_wait, &QTimer::timeout, this, &BusInstance::claimAgain);
}

// Gives the name back in a round trip, and sends the answers that wait for that in another: they
// are on their way by then, even if the program ends right now.
BusInstance::~BusInstance()
{
    if (!_isGranted || !_bus.isOpen()) {
        return;
    }
    _bus.get().interface()->unregisterService(QLatin1String(InstanceMessage::service));
    for (const QDBusMessage &call : std::as_const(_quitCalls)) {
        _bus.get().send(call.createReply());
    }
    settle();
}

InstanceAnswer BusInstance::tell(const InstanceRequest &request)
{
    const QDBusConnection bus = _bus.get();
    if (!bus.isConnected()) {
        return {};
    }
    const QDBusMessage call = InstanceMessage::callFor(request);
    // Asked first, because Qt 6.8 does not say who sent a reply.
    QDBusMessage owner = askForOwner();
    while (owner.type() == QDBusMessage::ReplyMessage) {
        const QDBusMessage reply = bus.call(call, QDBus::Block, int(_patience.count()));
        if (reply.type() == QDBusMessage::ReplyMessage) {
            return answerFrom(reply, request.verb);
        }
        const QDBusMessage ownerNow = askForOwner();
        const bool hasLeft = ownerNow.type() == QDBusMessage::ReplyMessage
            ? ownerNow.arguments() != owner.arguments()
            : isNobodyThere(ownerNow);
        if (!hasLeft) {
            return answerFrom(reply, request.verb);
        }
        // A program that is about to end refuses everything. What is asked is for the next one.
        if (request.verb == InstanceRequest::Verb::Quit) {
            settle();
            return { InstanceAnswer::Outcome::Done, {} };
        }
        owner = ownerNow;
    }
    if (isNobodyThere(owner)) {
        settle();
        return {};
    }
    return answerFrom(owner, request.verb);
}

QDBusMessage BusInstance::askForOwner()
{
    QDBusMessage question = QDBusMessage::createMethodCall(busService,
        QStringLiteral("/org/freedesktop/DBus"), busService, QStringLiteral("GetNameOwner"));
    question << QString::fromLatin1(InstanceMessage::service);
    return _bus.get().call(question, QDBus::Block, int(_patience.count()));
}

InstanceAnswer BusInstance::answerFrom(const QDBusMessage &reply, InstanceRequest::Verb verb)
{
    if (reply.type() == QDBusMessage::ReplyMessage) {
        if (verb != InstanceRequest::Verb::Status) {
            return { InstanceAnswer::Outcome::Done, {} };
        }
        if (reply.signature() != QLatin1String("s")) {
            return strangersAnswer();
        }
        return { InstanceAnswer::Outcome::Done, reply.arguments().constFirst().toString() };
    }
    settle();
    const QDBusError error(reply);
    switch (error.type()) {
    case QDBusError::Disconnected:
        return {};
    case QDBusError::NoReply:
    case QDBusError::Timeout:
    case QDBusError::TimedOut:
        return failure(QStringLiteral("the running Ortu does not answer"));
    case QDBusError::UnknownMethod:
    case QDBusError::UnknownInterface:
    case QDBusError::UnknownObject:
        return strangersAnswer();
    default:
        return failure(
            QStringLiteral("the running Ortu refuses: %1").arg(error.message().simplified()));
    }
}

// QtDBus reports an error that we have already been given once more to itself, on its own thread.
// Should the program end meanwhile, it prints warnings about its own end.
void BusInstance::settle()
{
    _bus.get().call(QDBusMessage::createMethodCall(busService, QStringLiteral("/"),
        QStringLiteral("org.freedesktop.DBus.Peer"), QStringLiteral("Ping")));
}

SingleInstance::Claim BusInstance::claim(Status status)
{
    if (_isGranted) {
        return Claim::Granted;
    }
    _status = std::move(status);
    if (!_bus.get().isConnected()) {
        qCWarning(lcPlatform, "there is no session bus, so other starts cannot find this one");
        if (!SessionBus::isAddressOurs()) {
            _wait.start(firstWait);
        }
        return Claim::Impossible;
    }
    const auto reply = requestName();
    if (_isGranted) {
        return Claim::Granted;
    }
    if (reply.isValid()) {
        return Claim::Taken;
    }
    settle();
    qCWarning(lcPlatform, "other starts cannot find this one: %s",
        qUtf8Printable(reply.error().message().simplified()));
    return Claim::Impossible;
}

// Valid when the bus has answered.
QDBusReply<QDBusConnectionInterface::RegisterServiceReply> BusInstance::requestName()
{
    offer();
    const auto reply = _bus.get().interface()->registerService(
        QLatin1String(InstanceMessage::service), QDBusConnectionInterface::DontQueueService,
        QDBusConnectionInterface::DontAllowReplacement);
    _isGranted = reply.isValid() && reply.value() == QDBusConnectionInterface::ServiceRegistered;
    if (_isGranted) {
        watchBus();
    } else {
        _bus.get().unregisterObject(QLatin1String(InstanceMessage::path));
        _object.reset();
    }
    return reply;
}

// Before the name is ours: programs that wait for it ask at once.
void BusInstance::offer()
{
    _object = std::make_unique<QObject>();
    // Both belong to the object.
    new ApplicationInterface(_object.get(), _bus.get(),
        [this](const auto &request, const auto &call) { hear(request, call); });
    new StatusInterface(_object.get(), _status);
    _bus.get().registerObject(QLatin1String(InstanceMessage::path), _object.get());
}

void BusInstance::hear(InstanceRequest request, const QDBusMessage &call)
{
    call.setDelayedReply(true);
    if (request.verb == InstanceRequest::Verb::Quit) {
        _quitCalls.append(call);
    } else {
        request.caller = std::shared_ptr<void>(
            nullptr, [bus = _bus.get(), call](void *) { bus.send(call.createReply()); });
    }
    Q_EMIT requested(request);
}

void BusInstance::watchBus()
{
    auto *const local = new LocalInterface(_bus.get(), _object.get());
    connect(local, &LocalInterface::Disconnected, this, &BusInstance::loseBus);
}

void BusInstance::loseBus()
{
    qCWarning(lcPlatform, "the session bus is gone, so other starts cannot find this one");
    _isGranted = false;
    _wait.start(firstWait);
}

void BusInstance::claimAgain()
{
    _object.reset();
    _quitCalls.clear();
    _bus.close();
    const bool isBack = !isBusSilent(qgetenv("DBUS_SESSION_BUS_ADDRESS"), longestSilence)
        && _bus.get().isConnected();
    if (isBack && requestName().isValid()) {
        if (_isGranted) {
            return;
        }
        // One that is about to end, or is busy, does not answer now.
        if (tell({ InstanceRequest::Verb::Status, {}, {} }).outcome
            == InstanceAnswer::Outcome::Done) {
            qCWarning(lcPlatform, "another Ortu has been started meanwhile, so this one ends");
            Q_EMIT requested({ InstanceRequest::Verb::Quit, {}, {} });
            return;
        }
    }
    _wait.start(std::min(_wait.intervalAsDuration() * 2, longestWait));
}
