#include "platform/freedesktop/bus/BusConnection.h"

#include "platform/freedesktop/bus/SessionBus.h"

#include <atomic>

namespace {

// QtDBus knows its connections by name.
QString unusedName()
{
    static std::atomic<int> count = 0;
    return QStringLiteral("ortu-%1").arg(++count);
}

} // namespace

BusConnection::~BusConnection()
{
    close();
}

void BusConnection::close()
{
    if (_connection) {
        _connection.reset();
        QDBusConnection::disconnectFromBus(_name);
    }
}

// By kind and not by address: with an address QtDBus drops the connection to a bus that will not
// have us in a way that the bus library ends the program for.
QDBusConnection BusConnection::get()
{
    if (!_connection) {
        SessionBus::neverStartOne();
        SessionBus::avoidSilence();
        _name = unusedName();
        _connection = QDBusConnection::connectToBus(QDBusConnection::SessionBus, _name);
    }
    return *_connection;
}
