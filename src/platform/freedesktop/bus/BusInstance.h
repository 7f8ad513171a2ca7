// Starts of the program find each other by a name on the session bus.
//
// One request is one round trip on a connection of our own. Nothing of this needs an application
// object but the event loop that `requested` comes from. A request to quit is answered once the
// name is free again, so that the program may be started anew right after it.
//
// A bus that goes away ends all of it, with one line, and the program runs on. The name is claimed
// again when a bus is back at the same address, and so it is where the session has an address but
// no bus at the start. Where another Ortu was quicker, which could not find this one, this one is
// asked to quit.

#pragma once

#include "platform/SingleInstance.h"
#include "platform/freedesktop/bus/BusConnection.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QTimer>

#include <chrono>
#include <memory>

class BusInstance final : public SingleInstance
{
    Q_OBJECT

public:
    // How long the running program may take to answer.
    explicit BusInstance(std::chrono::milliseconds patience = std::chrono::seconds(5));
    ~BusInstance() override;

    InstanceAnswer tell(const InstanceRequest &request) override;
    Claim claim(Status status) override;

private:
    InstanceAnswer answerFrom(const QDBusMessage &reply, InstanceRequest::Verb verb);
    // Which connection has the name; an error where none has it, or the bus does not answer.
    QDBusMessage askForOwner();
    void settle();
    void offer();
    void hear(InstanceRequest request, const QDBusMessage &call);
    QDBusReply<QDBusConnectionInterface::RegisterServiceReply> requestName();
    void watchBus();
    void loseBus();
    void claimAgain();

    const std::chrono::milliseconds _patience;
    BusConnection _bus;
    // Holds the interfaces; there as soon as a name may be ours.
    std::unique_ptr<QObject> _object;
    Status _status;
    bool _isGranted = false;
    // Until the next try to claim the name again.
    QTimer _wait;
    // Those that wait for the end of this program.
    QList<QDBusMessage> _quitCalls;
};
