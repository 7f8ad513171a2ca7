// What one launch takes along: the identifier by which desktop and program recognise it, the
// environment, and the messages that tell panels that something is being started.
//
// The identifier names the launch and the X server's time, by which a window manager knows that the
// new window may come to the front. Make one object a launch; different ones may be used at once on
// different threads.

#pragma once

#include "platform/freedesktop/base/GioPointer.h"
#include "platform/freedesktop/x11/StartupDisplay.h"

#include <QByteArray>
#include <QString>

class LaunchContext final
{
public:
    // What a panel may show while the program starts. What is empty is left out.
    struct Description
    {
        QString name;
        QString program;
        QString icon;
        QString windowClass;
        QString entryPath;
    };

    // For what is at a path, which the identifier leads back to; empty where that is not asked
    // for.
    explicit LaunchContext(const QString &path = {});
    ~LaunchContext();
    Q_DISABLE_COPY_MOVE(LaunchContext)

    // Empty when there is no display, or when it does not tell the time.
    const QByteArray &startupId() const { return _startupId; }

    GAppLaunchContext *gio() const { return _context.get(); }

    // Tells that the program is about to start. To be used only for programs that tell in their
    // turn when they have: for others, desktops would show them as starting for half a minute.
    void announce(const Description &description);

    // To be called once the program runs; an announcement that this does not follow is taken back
    // when the object goes.
    void succeed() { _isAnnounced = false; }

private:
    StartupDisplay _display;
    QByteArray _startupId;
    GioPointer<GAppLaunchContext> _context;
    bool _isAnnounced = false;
};
