// What can be done to an application that runs, named by the path of its bundle. All of it is
// silent when the application does not run.
//
// The base class is a desktop that controls nothing.

#pragma once

#include <QString>

#include <optional>

// A number that no two launches in this session share; 0 when there is none.
struct ProcessSerialNumber
{
    quint32 high = 0;
    quint32 low = 0;

    bool operator==(const ProcessSerialNumber &other) const = default;
};

struct RunningProcess
{
    // 0 when the application runs but its process cannot be told.
    qint64 identifier = 0;
    ProcessSerialNumber serialNumber;
};

class ApplicationControl
{
public:
    virtual ~ApplicationControl() = default;

    // Empty when the application does not run.
    virtual std::optional<RunningProcess> processOf(const QString &bundlePath) const;

    // Whether any of its windows is shown.
    virtual bool isVisible(const QString &bundlePath) const;
    // Shows the windows that were put away, without making any of them active.
    virtual void show(const QString &bundlePath);
    virtual void hide(const QString &bundlePath);

    // Brings it to the front. False when there is nothing to bring.
    virtual bool activate(const QString &bundlePath);

    // Asks it politely to end. It may ask the user back, or refuse.
    virtual void quit(const QString &bundlePath);
};
