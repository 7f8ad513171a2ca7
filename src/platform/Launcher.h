// Starting applications, and showing files in the file browser.
//
// The base class can start nothing. Every operation may be called from any thread and may take a
// moment.

#pragma once

#include <QList>
#include <QString>
#include <QUrl>

#include <optional>

// How a launch went. The numbers appear in the log.
enum class LaunchStatus {
    Launched = 0,
    // The application's own file is gone.
    FileNotFound = -43,
    // Its file is there but names a program that is missing or may not be executed, or it is no
    // application.
    CannotExecute = -10661,
    // The desktop refused for another reason.
    Failed = -10810,
};

class Launcher
{
public:
    virtual ~Launcher() = default;

    // Opens the application at a path. Without a list it is simply started; with one, even an empty
    // one, it is asked to open those documents.
    virtual LaunchStatus open(
        const QString &bundlePath, const std::optional<QList<QUrl>> &documents);

    // Whether an application that runs can be had in one more window. Reads a small file.
    virtual bool canOpenNewWindow(const QString &bundlePath) const;
    // Opens that: does what the application itself offers for it, or starts it once more.
    virtual LaunchStatus openNewWindow(const QString &bundlePath);

    // Shows the item in the file browser, selected where that is possible. False and one log line
    // when no browser could be asked.
    virtual bool reveal(const QString &path);
};
