#include "platform/freedesktop/launch/EntryLaunch.h"

#include "platform/freedesktop/base/GioPointer.h"
#include "platform/freedesktop/base/Log.h"
#include "platform/freedesktop/base/Programs.h"
#include "platform/freedesktop/bus/SessionBus.h"
#include "platform/freedesktop/entries/DesktopEntry.h"
#include "platform/freedesktop/entries/PlainEntry.h"
#include "platform/freedesktop/launch/LaunchContext.h"
#include "platform/freedesktop/launch/LaunchScope.h"
#include "platform/freedesktop/launch/ProgramLaunch.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMutex>

#include <gio/gdesktopappinfo.h>

namespace {

constexpr int longestActivation = 10'000; // milliseconds

// What an application is asked to do: one of its entry's actions, or else to open documents, if
// any.
struct Wish
{
    QList<QUrl> documents {};
    QByteArray action {};
    // By its command line, whatever the bus could do.
    bool isByProgram = false;
};

// A call of the interface by which the bus starts applications.
struct BusCall
{
    const char *method = nullptr;
    GVariant *arguments = nullptr;
};

// A list of URIs as GIO wants it.
class UriList final
{
public:
    explicit UriList(const QList<QUrl> &documents)
    {
        for (const QUrl &document : documents) {
            _list = g_list_append(_list, g_strdup(document.toEncoded().constData()));
        }
    }
    ~UriList() { g_list_free_full(_list, g_free); }
    Q_DISABLE_COPY_MOVE(UriList)

    GList *get() const { return _list; }

private:
    GList *_list = nullptr;
};

// What the bus calls the application of an entry: an entry that the bus can start is named after
// it. Empty when that is no name for the bus.
QByteArray busName(const QString &path)
{
    const QByteArray name = QFileInfo(path).completeBaseName().toUtf8();
    return g_dbus_is_name(name.constData()) != FALSE && !name.startsWith(':') ? name : QByteArray();
}

GVariant *platformData(const QByteArray &startupId)
{
    GVariantBuilder builder;
    g_variant_builder_init(&builder, G_VARIANT_TYPE_VARDICT);
    if (!startupId.isEmpty()) {
        g_variant_builder_add(
            &builder, "{sv}", "desktop-startup-id", g_variant_new_string(startupId.constData()));
    }
    return g_variant_builder_end(&builder);
}

GVariant *uriList(const QList<QUrl> &documents)
{
    GVariantBuilder builder;
    g_variant_builder_init(&builder, G_VARIANT_TYPE_STRING_ARRAY);
    for (const QUrl &document : documents) {
        g_variant_builder_add(&builder, "s", document.toEncoded().constData());
    }
    return g_variant_builder_end(&builder);
}

BusCall busCall(const Wish &wish, const QByteArray &startupId)
{
    GVariant *const data = platformData(startupId);
    if (!wish.action.isEmpty()) {
        return { "ActivateAction",
            g_variant_new("(sav@a{sv})", wish.action.constData(), nullptr, data) };
    }
    if (wish.documents.isEmpty()) {
        return { "Activate", g_variant_new("(@a{sv})", data) };
    }
    return { "Open", g_variant_new("(@as@a{sv})", uriList(wish.documents), data) };
}

// Asks the application on the bus. GIO could be told to, but it passes the identifier on only for
// entries that want a launch to be announced, and does not tell what became of an action.
LaunchStatus activate(
    GDBusConnection *bus, const QByteArray &name, const Wish &wish, const QByteArray &startupId)
{
    const QByteArray path = '/' + QByteArray(name).replace('.', '/').replace('-', '_');
    const BusCall call = busCall(wish, startupId);
    GioError error;
    GVariant *const answer = g_dbus_connection_call_sync(bus, name.constData(), path.constData(),
        "org.freedesktop.Application", call.method, call.arguments, nullptr, G_DBUS_CALL_FLAGS_NONE,
        longestActivation, nullptr, error.receive());
    if (answer != nullptr) {
        g_variant_unref(answer);
        return LaunchStatus::Launched;
    }
    // An application that is slow to answer has been asked all the same.
    if (error.matches(G_IO_ERROR, G_IO_ERROR_TIMED_OUT)) {
        return LaunchStatus::Launched;
    }
    qCDebug(lcPlatform, "not activated: %s", qUtf8Printable(error.text()));
    return error.matches(G_DBUS_ERROR, G_DBUS_ERROR_SERVICE_UNKNOWN) ? LaunchStatus::CannotExecute
                                                                     : LaunchStatus::Failed;
}

void setUpChild(gpointer folder)
{
    becomeIndependent(static_cast<const char *>(folder));
}

void collect(GDesktopAppInfo *, GPid pid, gpointer pids)
{
    static_cast<QList<qint64> *>(pids)->append(pid);
}

// Starts the entry's program and gives its processes: one for each document when it takes only one.
//
// GIO tells the bus of every launch, and has a thread of its small pool wait until that is sent,
// which takes another thread of the pool. Many launches at once would leave none for it, and
// nothing would be sent any more, by whomever. Started one after the other they leave enough.
LaunchStatus spawn(GDesktopAppInfo *info, const QList<QUrl> &documents, GAppLaunchContext *context,
    QList<qint64> *pids)
{
    static QMutex turn;
    const UriList uris(documents);
    char *const folder = g_desktop_app_info_get_string(info, G_KEY_FILE_DESKTOP_KEY_PATH);
    const bool hasFolder = folder != nullptr && *folder != '\0';
    g_free(folder);
    QByteArray home = QFile::encodeName(QDir::homePath());
    GioError error;
    const QMutexLocker lock(&turn);
    if (g_desktop_app_info_launch_uris_as_manager(info, uris.get(), context, G_SPAWN_SEARCH_PATH,
            setUpChild, hasFolder ? nullptr : home.data(), collect, pids, error.receive())
        != FALSE) {
        return LaunchStatus::Launched;
    }
    qCDebug(lcPlatform, "not launched: %s", qUtf8Printable(error.text()));
    return LaunchStatus::Failed;
}

// GIO calls a launch a success before the program has been looked for.
bool isRunnable(const QString &path, const DesktopEntry &entry)
{
    if (entry.kind != DesktopEntry::Kind::Application) {
        qCDebug(lcPlatform, "%s: no application", qUtf8Printable(path));
        return false;
    }
    for (const QString &program : { entry.tryExec, entry.program }) {
        if (!program.isEmpty() && !Programs::isThere(program)) {
            qCDebug(lcPlatform, "%s: no program %s", qUtf8Printable(path), qUtf8Printable(program));
            return false;
        }
    }
    return true;
}

// Tells of the launch when the entry says that its program will tell in its turn.
void announce(
    LaunchContext &context, GDesktopAppInfo *info, const QString &path, const DesktopEntry &entry)
{
    if (info != nullptr
        && g_desktop_app_info_get_boolean(info, G_KEY_FILE_DESKTOP_KEY_STARTUP_NOTIFY) != FALSE) {
        const QString name = QString::fromUtf8(g_app_info_get_name(G_APP_INFO(info)));
        context.announce({ name, entry.program, entry.icon, entry.startupWMClass, path });
    }
}

LaunchStatus launch(
    LaunchContext &context, const QString &path, const DesktopEntry &entry, const Wish &wish)
{
    const QByteArray fileName = QFile::encodeName(path);
    const SessionBus bus;
    GioPointer<GDesktopAppInfo> info(g_desktop_app_info_new_from_filename(fileName.constData()));
    announce(context, info.get(), path, entry);
    if (info && entry.isDBusActivatable && wish.isByProgram) {
        info.reset();
    } else if (info && entry.isDBusActivatable) {
        const QByteArray name = busName(path);
        const LaunchStatus status = bus.get() != nullptr && !name.isEmpty()
            ? activate(bus.get(), name, wish, context.startupId())
            : LaunchStatus::Failed;
        if (status == LaunchStatus::Launched || entry.program.isEmpty()) {
            return status;
        }
        info.reset();
    }
    if (!info || !wish.action.isEmpty()) {
        info = plainEntry(path, wish.action);
    }
    if (!info) {
        qCDebug(lcPlatform, "%s: refused by GIO", qUtf8Printable(path));
        return LaunchStatus::CannotExecute;
    }
    // A window is matched to its entry by this; GIO sets it only for what it read from a file
    // itself.
    g_app_launch_context_setenv(context.gio(), "GIO_LAUNCHED_DESKTOP_FILE", fileName.constData());
    QList<qint64> pids;
    const LaunchStatus status = spawn(info.get(), wish.documents, context.gio(), &pids);
    const QString name = QString::fromUtf8(g_app_info_get_name(G_APP_INFO(info.get())));
    LaunchScope::move(bus, { path, name }, pids);
    return status;
}

LaunchStatus fulfil(const QString &path, const Wish &wish)
{
    const DesktopEntry entry = DesktopEntry::fromFile(path, {});
    if (!isRunnable(path, entry)) {
        return LaunchStatus::CannotExecute;
    }
    LaunchContext context(path);
    const LaunchStatus status = launch(context, path, entry, wish);
    if (status == LaunchStatus::Launched) {
        context.succeed();
    }
    return status;
}

} // namespace

LaunchStatus launchEntry(const QString &path, const QList<QUrl> &documents)
{
    return fulfil(path, { documents });
}

LaunchStatus launchEntryAction(const QString &path, const QString &actionId)
{
    return fulfil(path, { .action = actionId.toUtf8() });
}

LaunchStatus launchEntryAgain(const QString &path)
{
    return fulfil(path, { .isByProgram = true });
}
