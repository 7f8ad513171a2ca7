#include "platform/freedesktop/launch/ProgramLaunch.h"

#include "platform/freedesktop/base/DocumentFile.h"
#include "platform/freedesktop/base/Log.h"
#include "platform/freedesktop/bus/SessionBus.h"
#include "platform/freedesktop/launch/LaunchContext.h"
#include "platform/freedesktop/launch/LaunchScope.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <array>
#include <csignal>
#include <unistd.h>

namespace {

// A file without execute permission.
constexpr const char *noProgram = "/dev/null";

// All that the child needs, made before it starts: it may not take memory.
struct Start
{
    char **arguments = nullptr;
    char **environment = nullptr;
    QByteArray home;
};

// Becomes the program, or returns when the system cannot execute it. GLib would in that case try
// the shell on it, whatever it is; so GLib itself is given a file that fails, and reports that.
void becomeProgram(gpointer data)
{
    const auto *const start = static_cast<const Start *>(data);
    becomeIndependent(start->home.constData());
    ::execve(start->arguments[0], start->arguments, start->environment);
}

char **argumentsOf(const QString &program, const QList<QUrl> &documents)
{
    GStrvBuilder *const builder = g_strv_builder_new();
    g_strv_builder_add(builder, QFile::encodeName(program).constData());
    for (const QUrl &document : documents) {
        const QByteArray argument =
            document.isLocalFile() ? fileNameOf(document) : document.toEncoded();
        g_strv_builder_add(builder, argument.constData());
    }
    char **const arguments = g_strv_builder_end(builder);
    g_strv_builder_unref(builder);
    return arguments;
}

} // namespace

void becomeIndependent(const char *folder)
{
    ::setsid();
    sigset_t none;
    ::sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
    ::signal(SIGPIPE, SIG_DFL);
    if (folder != nullptr && ::chdir(folder) != 0) {
        // Then it starts where we are.
        return;
    }
}

LaunchStatus launchProgram(
    const QString &bundlePath, const QString &program, const QList<QUrl> &documents)
{
    const LaunchContext context(bundlePath);
    Start start { argumentsOf(program, documents),
        g_app_launch_context_get_environment(context.gio()), QFile::encodeName(QDir::homePath()) };
    QByteArray failing(noProgram);
    std::array<char *, 2> failingArguments { failing.data(), nullptr };
    GPid pid = 0;
    const bool isStarted = g_spawn_async(nullptr, failingArguments.data(), nullptr, G_SPAWN_DEFAULT,
                               becomeProgram, &start, &pid, nullptr)
        != FALSE;
    g_strfreev(start.arguments);
    g_strfreev(start.environment);
    if (!isStarted) {
        qCDebug(lcPlatform, "%s: cannot be executed", qUtf8Printable(program));
        return LaunchStatus::CannotExecute;
    }
    LaunchScope::move(
        SessionBus(), { bundlePath, QFileInfo(bundlePath).completeBaseName() }, { pid });
    return LaunchStatus::Launched;
}
