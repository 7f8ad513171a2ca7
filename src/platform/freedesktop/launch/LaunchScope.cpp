#include "platform/freedesktop/launch/LaunchScope.h"

#include "platform/freedesktop/base/Log.h"
#include "platform/freedesktop/bus/SessionBus.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFileInfo>

namespace {

constexpr int longestAnswer = 1000; // milliseconds
constexpr qsizetype longestUnitName = 255;

bool isPlain(char c)
{
    return g_ascii_isalnum(c) != FALSE || c == ':' || c == '_' || c == '.';
}

// As systemd escapes the parts of a unit's name, of which `-` separates the parts. Cut off after at
// most `longest` characters.
QByteArray escaped(const QByteArray &text, qsizetype longest)
{
    QByteArray result;
    for (const char c : text) {
        const bool isTaken = isPlain(c) && !(c == '.' && result.isEmpty());
        const QByteArray part = isTaken
            ? QByteArray(1, c)
            : "\\x" + QByteArray::number(uchar(c), 16).rightJustified(2, '0');
        if (result.size() + part.size() > longest) {
            break;
        }
        result += part;
    }
    return result;
}

GVariant *text(const QString &value)
{
    return g_variant_new_string(value.toUtf8().constData());
}

// The arguments of the call: name, mode, properties, and no other units.
GVariant *request(const LaunchScope::Program &program, qint64 pid)
{
    const auto number = guint32(pid);
    GVariantBuilder properties;
    g_variant_builder_init(&properties, G_VARIANT_TYPE("a(sv)"));
    g_variant_builder_add(&properties, "(sv)", "PIDs",
        g_variant_new_fixed_array(G_VARIANT_TYPE_UINT32, &number, 1, sizeof(number)));
    // A unit whose processes have failed is not kept to be looked at.
    g_variant_builder_add(
        &properties, "(sv)", "CollectMode", g_variant_new_string("inactive-or-failed"));
    g_variant_builder_add(&properties, "(sv)", "Description", text(program.name));
    g_variant_builder_add(&properties, "(sv)", "SourcePath", text(QDir::cleanPath(program.path)));
    return g_variant_new("(ssa(sv)a(sa(sv)))",
        LaunchScope::unitName(LaunchScope::applicationId(program.path), pid).constData(), "fail",
        &properties, nullptr);
}

} // namespace

QString LaunchScope::applicationId(const QString &path)
{
    const QLatin1String extension(".desktop");
    if (!path.endsWith(extension)) {
        return QFileInfo(path).completeBaseName();
    }
    // The IDs of entries in folders of their own have the folders' names in them.
    const QLatin1String folder("/applications/");
    const qsizetype start = path.lastIndexOf(folder);
    QString id = start < 0 ? QFileInfo(path).fileName() : path.mid(start + folder.size());
    id.chop(extension.size());
    return id.replace(QLatin1Char('/'), QLatin1Char('-'));
}

QByteArray LaunchScope::unitName(const QString &applicationId, qint64 pid)
{
    const QByteArray start = "app-ortu-";
    const QByteArray end = '-' + QByteArray::number(pid) + ".scope";
    return start + escaped(applicationId.toUtf8(), longestUnitName - start.size() - end.size())
        + end;
}

void LaunchScope::move(const SessionBus &bus, const Program &program, const QList<qint64> &pids)
{
    const QDeadlineTimer limit(longestAnswer);
    for (const qint64 pid : pids) {
        if (bus.get() == nullptr || limit.hasExpired()) {
            return;
        }
        GioError error;
        GVariant *const answer = g_dbus_connection_call_sync(bus.get(), "org.freedesktop.systemd1",
            "/org/freedesktop/systemd1", "org.freedesktop.systemd1.Manager", "StartTransientUnit",
            request(program, pid), nullptr, G_DBUS_CALL_FLAGS_NO_AUTO_START,
            qMax(1, int(limit.remainingTime())), nullptr, error.receive());
        if (answer != nullptr) {
            g_variant_unref(answer);
        } else if (!error.matches(G_DBUS_ERROR, G_DBUS_ERROR_NAME_HAS_NO_OWNER)
            && !error.matches(G_DBUS_ERROR, G_DBUS_ERROR_SERVICE_UNKNOWN)) {
            qCDebug(lcPlatform, "%s: no unit of its own: %s", qUtf8Printable(program.path),
                qUtf8Printable(error.text()));
        }
    }
}
