// The session bus as GIO knows it: one connection that all of GIO shares.
//
// Make one before anything is asked of GIO that may use the bus by itself, and keep it until that
// is done. Left to its own, GIO ends the program once the bus goes away. And it reports what became
// of the connection to the event loop of the thread that happened to open it: a thread that runs
// none would leave a dead connection to everybody who asks after it. So the reports go to the main
// thread.
//
// May be used on any thread, on the one that made it.

#pragma once

#include "platform/freedesktop/base/GioPointer.h"

class SessionBus final
{
public:
    SessionBus();
    ~SessionBus();
    Q_DISABLE_COPY_MOVE(SessionBus)

    // Null when there is no session bus.
    GDBusConnection *get() const { return _connection.get(); }

    // Where a session has no bus, GIO would start one that no other program knows of. This makes it
    // look for one in the session's folder and nowhere else, by way of our environment. To be
    // called before there are threads that read the environment.
    static void neverStartOne();
    // Looks once whether the bus answers, for some seconds at most. All of the program does without
    // one that does not, again by way of our environment.
    static void avoidSilence();
    // Whether these have changed the environment, and what children get in its place: the address
    // that was there before, which may be empty.
    static bool isAddressOurs();
    static QByteArray givenAddress();

private:
    // Of this thread's event loop, put aside meanwhile. Null on the main thread.
    GMainContext *const _threadContext;
    GioPointer<GDBusConnection> _connection;
};
