// The system that the program is built for: what is needed before there is a desktop, and the
// making of the desktop. The build links one folder that defines makePlatform(), and nothing else
// in the program depends on which.
//
// The base class is a system that offers nothing. Main thread only.

#pragma once

#include "platform/Desktop.h"
#include "platform/SingleInstance.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QTranslator>

#include <memory>

class Platform
{
public:
    Platform() = default;
    virtual ~Platform() = default;
    Q_DISABLE_COPY_MOVE(Platform)

    // These need no application object.

    // Why nothing can be done in this environment, in one line; empty when something can.
    virtual QString environmentProblem() const { return {}; }
    // Has a crash leave a log for the developers from now on.
    virtual void installCrashReporter() { }
    // For the program of this session. For other starts to be heard, the event loop has to run.
    virtual std::unique_ptr<SingleInstance> makeInstance()
    {
        return std::make_unique<SingleInstance>();
    }
    // Chooses the display among those that Qt knows. Returns why there is none, in one line; empty
    // when there is one.
    virtual QString chooseDisplay() { return {}; }
    // Begins to read on a thread what the desktop needs first.
    virtual void readAhead() { }

    // These need one.

    // Qt's names of the languages in which the user wants to read, the best one first; English
    // without any.
    virtual QList<QByteArray> languages() const { return {}; }
    // What is called differently on this system: from English into English.
    virtual std::unique_ptr<QTranslator> makeWording() const
    {
        return std::make_unique<QTranslator>();
    }
    virtual std::unique_ptr<Desktop> makeDesktop() { return std::make_unique<Desktop>(); }
    // Deletes all but the newest logs of crashes, on a thread.
    virtual void removeOldCrashLogs() { }
};

std::unique_ptr<Platform> makePlatform();
