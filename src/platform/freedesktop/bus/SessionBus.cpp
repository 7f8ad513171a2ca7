#include "platform/freedesktop/bus/SessionBus.h"

#include "platform/freedesktop/base/Log.h"
#include "platform/freedesktop/bus/BusSilence.h"

#include <atomic>
#include <chrono>
#include <utility>

namespace {

constexpr const char *addressVariable = "DBUS_SESSION_BUS_ADDRESS";
constexpr const char *nowhere = "unix:path=/nonexistent/bus";
// A bus is slow at the start of a session, when everything starts at once.
constexpr std::chrono::seconds longestSilence(3);

// Of the environment's address: whether it is ours, and what stood there before.
std::atomic<bool> isAddressSet = false;
QByteArray addressBefore;

void setAddress(const QByteArray &address)
{
    addressBefore = isAddressSet ? addressBefore : qgetenv(addressVariable);
    qputenv(addressVariable, address);
    isAddressSet = true;
}

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
        setAddress(usualAddress());
    }
}

void SessionBus::avoidSilence()
{
    static bool isProbed = false;
    if (!std::exchange(isProbed, true) && isBusSilent(qgetenv(addressVariable), longestSilence)) {
        qCWarning(lcPlatform, "the session bus does not answer");
        setAddress(nowhere);
    }
}

bool SessionBus::isAddressOurs()
{
    const QByteArray address = qgetenv(addressVariable);
    return isAddressSet && (address == usualAddress() || address == nowhere);
}

QByteArray SessionBus::givenAddress()
{
    return addressBefore;
}
