// A connection of our own to the session bus, by way of QtDBus. (GIO's is SessionBus.)
//
// It is opened when it is first asked for, closed at the end of this object, and shared with no
// other: what happens to it happens to its owner alone. A bus that goes away leaves a connection
// that is not connected; no bus at all is the same. Needs no application object. Lives on one
// thread.

#pragma once

#include <QDBusConnection>
#include <QString>

#include <optional>

class BusConnection final
{
public:
    BusConnection() = default;
    ~BusConnection();
    Q_DISABLE_COPY_MOVE(BusConnection)

    // Tries once, until it is closed. Where the session has no bus, none is started; one that does
    // not answer counts as none after some seconds.
    QDBusConnection get();
    bool isOpen() const { return _connection && _connection->isConnected(); }
    // The next get() tries anew.
    void close();

private:
    QString _name;
    std::optional<QDBusConnection> _connection;
};
