// One more window of an application that runs, by its desktop entry.

#pragma once

#include <QByteArray>
#include <QString>

struct NewWindow
{
    enum class By { Nothing, Action, Start };

    By by = By::Nothing;
    // The identifier of the action.
    QByteArray action {};

    // By the action that the entry lists for it, else by its command line. Nothing where the entry
    // says that there is one window only, and where it has no command line: what the bus starts
    // only raises the window that is there. Reads the entry.
    static NewWindow ofEntry(const QString &path);

    // Whether an action is meant for it: "new-window", "NewWindow" and the like.
    static bool isAction(const QByteArray &id);
};
