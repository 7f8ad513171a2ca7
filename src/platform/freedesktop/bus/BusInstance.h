// Starts of the program find each other by a name on the session bus.
//
// One request is one round trip on a connection of our own. Nothing of this needs an application
// object but the event loop that `requested` comes from. A request to quit is answered once the
// name is free again, so that the program may be started anew right after it. A bus that goes away
// ends all of it, with one line, and the program runs on.

#pragma once

#include "platform/SingleInstance.h"
#include "platform/freedesktop/bus/BusConnection.h"

#include <QDBusMessage>

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
    // Whether the program that answered has given the name back since.
    bool hasLeft(const QDBusMessage &reply);
    void settle();
    void offer(const Status &status);
    void hear(InstanceRequest request, const QDBusMessage &call);
    void watchBus();

    const std::chrono::milliseconds _patience;
    BusConnection _bus;
    // Holds the interfaces; there as soon as a name may be ours.
    std::unique_ptr<QObject> _object;
    bool _isGranted = false;
    // Those that wait for the end of this program.
    QList<QDBusMessage> _quitCalls;
};
