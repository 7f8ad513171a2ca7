#include "platform/freedesktop/SessionBus.h"

#include "platform/freedesktop/Log.h"

SessionBus::SessionBus()
    : _threadContext(g_main_context_get_thread_default())
{
    if (_threadContext != nullptr) {
        g_main_context_pop_thread_default(_threadContext);
    }
    GioError error;
    _connection.reset(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, error.receive()));
    if (!_connection) {
        qCDebug(lcPlatform, "no session bus: %s", qUtf8Printable(error.text()));
        return;
    }
    g_dbus_connection_set_exit_on_close(_connection.get(), FALSE);
}

SessionBus::~SessionBus()
{
    _connection.reset();
    if (_threadContext != nullptr) {
        g_main_context_push_thread_default(_threadContext);
    }
}
