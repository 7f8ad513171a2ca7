#include "platform/freedesktop/SessionBus.h"

#include "platform/freedesktop/Log.h"

#include <atomic>

namespace {

constexpr const char *addressVariable = "DBUS_SESSION_BUS_ADDRESS";

std::atomic<bool> isAddressSet = false;

// Where both GIO and the bus library look when the environment does not say.
QByteArray usualAddress()
{
    const QByteArray folder = qgetenv("XDG_RUNTIME_DIR");
    const QByteArray path = (folder.isEmpty() ? QByteArray("/nonexistent") : folder) + "/bus";
    char *const escaped = g_dbus_address_escape_value(path.constData());
    const QByteArray address = QByteArray("unix:path=") + escaped;
    g_free(escaped);
    return address;
}

} // namespace

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

void SessionBus::neverStartOne()
{
    if (qEnvironmentVariableIsEmpty(addressVariable)) {
        qputenv(addressVariable, usualAddress());
        isAddressSet = true;
    }
}

bool SessionBus::isAddressOurs()
{
    return isAddressSet && qgetenv(addressVariable) == usualAddress();
}
