// What an application offers to do beside being started, without being running first: a new window,
// a private one, a new message.
//
// The base class is a desktop whose applications offer nothing.

#pragma once

#include <QList>
#include <QString>

class ApplicationActions
{
public:
    struct Action
    {
        QString id;
        // In the user's language: plain text in one line, in which an ampersand means itself.
        QString title;
        // It is the one by which Launcher::openNewWindow() opens a window.
        bool isNewWindow = false;
    };

    virtual ~ApplicationActions() = default;

    // In the application's own order. Reads a small file.
    virtual QList<Action> actionsOf(const QString &bundlePath) const;

    // Takes a moment, at worst some ten seconds; may be called from any thread. False and one log
    // line when it could not be done.
    virtual bool perform(const QString &bundlePath, const QString &actionId);
};
