// The one running program of a session, and how other starts of it talk to it.
//
// The base class is a session in which programs cannot find each other: each start is a program of
// its own, none can be told anything, and no request ever comes.

#pragma once

#include "platform/ActivationStamp.h"

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QUrl>

#include <functional>
#include <memory>

// What the running program is asked for.
struct InstanceRequest
{
    // Activate is a start without arguments, Open one with files. Status only asks.
    enum class Verb { Activate, Open, Toggle, Show, Hide, Preferences, Rescan, Quit, Status };

    Verb verb = Verb::Activate;
    QList<QUrl> files;
    ActivationStamp stamp;
    // The other start is answered once the last copy of this is gone: keep one until what was asked
    // for is there. Null where no start waits.
    std::shared_ptr<void> caller = {};
};

struct InstanceAnswer
{
    enum class Outcome { Done, NoneRuns, Failed };

    Outcome outcome = Outcome::NoneRuns;
    // The status, where it was asked for and all went well; why not, in one line, where it failed.
    QString text;
};

class SingleInstance : public QObject
{
    Q_OBJECT

public:
    // The status of this program, as a JSON object.
    using Status = std::function<QByteArray()>;
    enum class Claim {
        // This program is the running one now.
        Granted,
        // Another one is.
        Taken,
        // None can be the only one. One line has said why, unless the session is like that.
        Impossible,
    };

    using QObject::QObject;

    // Tells the running program, and waits until it has done what it is asked for; asked to quit,
    // until it has ended. Never starts one. Hands on what the environment knows of how this program
    // was started where the request has no stamp.
    virtual InstanceAnswer tell(const InstanceRequest & /*request*/) { return {}; }

    // Becomes the running program until the end of this object.
    virtual Claim claim(Status /*status*/) { return Claim::Impossible; }

Q_SIGNALS:
    // Another start asks for something; never Status. Emitted by the event loop only.
    void requested(const InstanceRequest &request);
};
