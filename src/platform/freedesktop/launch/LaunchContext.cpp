#include "platform/freedesktop/launch/LaunchContext.h"

#include "platform/freedesktop/bus/SessionBus.h"
#include "platform/freedesktop/entries/LaunchedEntries.h"

#include <QCoreApplication>
#include <QSysInfo>

#include <atomic>

namespace {

// GIO asks its context for the identifier when it passes one on.
struct OrtuLaunchContext
{
    GAppLaunchContext parent;
    char *startupId;
};

struct OrtuLaunchContextClass
{
    GAppLaunchContextClass parent;
};

G_DEFINE_TYPE(OrtuLaunchContext, ortu_launch_context, G_TYPE_APP_LAUNCH_CONTEXT)

char *startupIdOf(GAppLaunchContext *context, GAppInfo *, GList *)
{
    return g_strdup(reinterpret_cast<OrtuLaunchContext *>(context)->startupId);
}

char *displayOf(GAppLaunchContext *, GAppInfo *, GList *)
{
    return g_strdup(g_getenv("DISPLAY"));
}

void finalize(GObject *object)
{
    g_free(reinterpret_cast<OrtuLaunchContext *>(object)->startupId);
    G_OBJECT_CLASS(ortu_launch_context_parent_class)->finalize(object);
}

void ortu_launch_context_class_init(OrtuLaunchContextClass *type)
{
    type->parent.get_startup_notify_id = startupIdOf;
    type->parent.get_display = displayOf;
    G_OBJECT_CLASS(type)->finalize = finalize;
}

void ortu_launch_context_init(OrtuLaunchContext *context)
{
    context->startupId = nullptr;
}

QByteArray newStartupId(quint32 time)
{
    static std::atomic<int> count = 0;
    return "ortu-" + QByteArray::number(QCoreApplication::applicationPid()) + '-'
        + QSysInfo::machineHostName().toUtf8() + '-' + QByteArray::number(++count) + "_TIME"
        + QByteArray::number(time);
}

} // namespace

LaunchContext::LaunchContext(const QString &path)
{
    const std::optional<quint32> time = _display.time();
    if (time) {
        _startupId = newStartupId(*time);
        LaunchedEntries::remember(QString::fromUtf8(_startupId), path);
    }
    auto *const context =
        static_cast<OrtuLaunchContext *>(g_object_new(ortu_launch_context_get_type(), nullptr));
    _context.reset(&context->parent);
    // GIO itself leaves these as they are for many programs; ours would be mistaken for theirs.
    for (const char *ours : { "DESKTOP_STARTUP_ID", "GIO_LAUNCHED_DESKTOP_FILE",
             "GIO_LAUNCHED_DESKTOP_FILE_PID", "XDG_ACTIVATION_TOKEN" }) {
        g_app_launch_context_unsetenv(_context.get(), ours);
    }
    if (SessionBus::isAddressOurs()) {
        const QByteArray given = SessionBus::givenAddress();
        const char *const variable = "DBUS_SESSION_BUS_ADDRESS";
        if (given.isEmpty()) {
            g_app_launch_context_unsetenv(_context.get(), variable);
        } else {
            g_app_launch_context_setenv(_context.get(), variable, given.constData());
        }
    }
    if (!_startupId.isEmpty()) {
        context->startupId = g_strdup(_startupId.constData());
        g_app_launch_context_setenv(_context.get(), "DESKTOP_STARTUP_ID", _startupId.constData());
    }
}

LaunchContext::~LaunchContext()
{
    if (_isAnnounced) {
        _display.broadcast("remove", { { "ID", _startupId } });
    }
}

void LaunchContext::announce(const Description &description)
{
    if (_startupId.isEmpty()) {
        return;
    }
    const QString text =
        QCoreApplication::translate("LaunchContext", "Starting %1").arg(description.name);
    _display.broadcast("new",
        { { "ID", _startupId }, { "SCREEN", QByteArray::number(_display.screen()) },
            { "NAME", description.name.toUtf8() }, { "DESCRIPTION", text.toUtf8() },
            { "BIN", description.program.toUtf8() }, { "ICON", description.icon.toUtf8() },
            { "WMCLASS", description.windowClass.toUtf8() },
            { "APPLICATION_ID", description.entryPath.toUtf8() } });
    _isAnnounced = true;
}
