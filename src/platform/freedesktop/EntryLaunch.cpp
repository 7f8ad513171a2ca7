#include "platform/freedesktop/EntryLaunch.h"

#include "platform/freedesktop/DesktopEntry.h"
#include "platform/freedesktop/FileState.h"
#include "platform/freedesktop/GioPointer.h"
#include "platform/freedesktop/Log.h"
#include "platform/freedesktop/Programs.h"

#include <QFile>

#include <gio/gdesktopappinfo.h>
#include <unistd.h>

namespace {

constexpr guint longestActivation = 10; // seconds

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

// A main context of our own, so that an asynchronous call can be waited for on any thread.
class PrivateContext final
{
public:
    PrivateContext() { g_main_context_push_thread_default(_context); }
    ~PrivateContext()
    {
        g_main_context_pop_thread_default(_context);
        g_main_context_unref(_context);
    }
    Q_DISABLE_COPY_MOVE(PrivateContext)

    GMainContext *get() const { return _context; }

private:
    GMainContext *_context = g_main_context_new();
};

// What the bus has answered so far.
struct Activation
{
    bool isAnswered = false;
    GioError error;
};

void takeAnswer(GObject *info, GAsyncResult *result, gpointer activation)
{
    auto *const answer = static_cast<Activation *>(activation);
    g_app_info_launch_uris_finish(G_APP_INFO(info), result, answer->error.receive());
    answer->isAnswered = true;
}

gboolean cancel(gpointer cancellable)
{
    g_cancellable_cancel(static_cast<GCancellable *>(cancellable));
    return G_SOURCE_REMOVE;
}

// Asks the application on the bus to open the documents. Only the asynchronous call tells when
// there is no such application.
LaunchStatus activate(GAppInfo *info, const UriList &uris)
{
    const PrivateContext context;
    const GioPointer<GCancellable> cancellable(g_cancellable_new());
    GSource *const limit = g_timeout_source_new_seconds(longestActivation);
    g_source_set_callback(limit, cancel, cancellable.get(), nullptr);
    g_source_attach(limit, context.get());
    Activation activation;
    g_app_info_launch_uris_async(
        info, uris.get(), nullptr, cancellable.get(), takeAnswer, &activation);
    while (!activation.isAnswered) {
        g_main_context_iteration(context.get(), TRUE);
    }
    g_source_destroy(limit);
    g_source_unref(limit);
    // An application that is slow to answer has been asked all the same.
    if (!activation.error.isSet() || activation.error.matches(G_IO_ERROR, G_IO_ERROR_CANCELLED)) {
        return LaunchStatus::Launched;
    }
    qCDebug(lcPlatform, "not activated: %s", qUtf8Printable(activation.error.text()));
    return activation.error.matches(G_DBUS_ERROR, G_DBUS_ERROR_SERVICE_UNKNOWN)
        ? LaunchStatus::CannotExecute
        : LaunchStatus::Failed;
}

// In a session of its own, so that an interrupt typed at our terminal does not reach the
// application.
void leaveSession(gpointer)
{
    ::setsid();
}

LaunchStatus spawn(GDesktopAppInfo *info, const UriList &uris, GAppLaunchContext *launchContext)
{
    GioError error;
    if (g_desktop_app_info_launch_uris_as_manager(info, uris.get(), launchContext,
            G_SPAWN_SEARCH_PATH, leaveSession, nullptr, nullptr, nullptr, error.receive())
        != FALSE) {
        return LaunchStatus::Launched;
    }
    qCDebug(lcPlatform, "not launched: %s", qUtf8Printable(error.text()));
    return LaunchStatus::Failed;
}

// The same entry without its name on the bus, and without a byte order mark, which GIO cannot read.
GioPointer<GDesktopAppInfo> plainEntry(const QString &path)
{
    QString problem;
    QByteArray text =
        readSmallFile(path, DesktopEntry::maximumSize, &problem).value_or(QByteArray());
    if (text.startsWith("\xef\xbb\xbf")) {
        text.remove(0, 3);
    }
    GKeyFile *const file = g_key_file_new();
    GioPointer<GDesktopAppInfo> info;
    if (g_key_file_load_from_data(
            file, text.constData(), gsize(text.size()), G_KEY_FILE_NONE, nullptr)
        != FALSE) {
        g_key_file_set_boolean(
            file, G_KEY_FILE_DESKTOP_GROUP, G_KEY_FILE_DESKTOP_KEY_DBUS_ACTIVATABLE, FALSE);
        info.reset(g_desktop_app_info_new_from_keyfile(file));
    }
    g_key_file_unref(file);
    return info;
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

} // namespace

LaunchStatus launchEntry(const QString &path, const QList<QUrl> &documents)
{
    const DesktopEntry entry = DesktopEntry::fromFile(path, {});
    if (!isRunnable(path, entry)) {
        return LaunchStatus::CannotExecute;
    }
    const QByteArray fileName = QFile::encodeName(path);
    GioPointer<GDesktopAppInfo> info(g_desktop_app_info_new_from_filename(fileName.constData()));
    const UriList uris(documents);
    if (info && entry.isDBusActivatable) {
        const LaunchStatus status = activate(G_APP_INFO(info.get()), uris);
        if (status == LaunchStatus::Launched || entry.program.isEmpty()) {
            return status;
        }
        info.reset();
    }
    if (!info) {
        info = plainEntry(path);
    }
    if (!info) {
        qCDebug(lcPlatform, "%s: refused by GIO", qUtf8Printable(path));
        return LaunchStatus::CannotExecute;
    }
    // A window is matched to its entry by this; GIO sets it only for what it read from a file
    // itself.
    const GioPointer<GAppLaunchContext> context(g_app_launch_context_new());
    g_app_launch_context_setenv(context.get(), "GIO_LAUNCHED_DESKTOP_FILE", fileName.constData());
    return spawn(info.get(), uris, context.get());
}
