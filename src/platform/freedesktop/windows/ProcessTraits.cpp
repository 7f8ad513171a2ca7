#include "platform/freedesktop/windows/ProcessTraits.h"

#include "platform/freedesktop/base/FileState.h"
#include "platform/freedesktop/base/Programs.h"
#include "platform/freedesktop/entries/BundleFolder.h"

#include <QFile>
#include <QFileInfo>
#include <QList>
#include <QRegularExpression>

#include <unistd.h>

namespace {

// An environment is a megabyte at most on most systems; of a larger one the rest is not looked at.
constexpr qint64 longestFile = 1 << 20;

// Scripts that start scripts, between an entry and its program.
constexpr int mostScripts = 3;

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.read(longestFile) : QByteArray();
}

// The value of a variable in a list of `NAME=value`, each ended by a NUL.
QByteArray valueIn(const QByteArray &environment, const QByteArray &name)
{
    const QByteArray wanted = '\0' + name + '=';
    const bool isFirst = environment.startsWith(wanted.mid(1));
    const qsizetype at = isFirst ? -1 : environment.indexOf(wanted);
    if (at < 0 && !isFirst) {
        return {};
    }
    return QByteArray(environment.constData() + at + wanted.size());
}

// Programs that run other programs, which say nothing of what they run.
bool isInterpreter(const QString &executable)
{
    static const QRegularExpression names(QStringLiteral(
        "^(python|perl|ruby|node|nodejs|php|lua|luajit|guile|gjs|gjs-console|mono|java|sh|bash|"
        "dash|zsh|fish|env|electron|wine|wine64|wine-preloader|wine64-preloader|qemu-.*|bwrap)"
        "[0-9.]*$"));
    return names.match(executable.section(QLatin1Char('/'), -1)).hasMatch();
}

// The first argument that is a file and no option. Told with a folder of its own, such as a module
// that Python looks for itself, the process has none.
QString scriptIn(const QByteArray &commandLine)
{
    const QList<QByteArray> words = commandLine.split('\0');
    for (qsizetype i = 1; i < words.size(); ++i) {
        if (words[i].startsWith('-')) {
            continue;
        }
        return words[i].startsWith('/') ? QFileInfo(QFile::decodeName(words[i])).canonicalFilePath()
                                        : QString();
    }
    return {};
}

// The innermost bundle folder above the executable.
QString bundleAround(const QString &executable)
{
    for (qsizetype slash = executable.lastIndexOf(QLatin1Char('/')); slash > 0;
         slash = executable.lastIndexOf(QLatin1Char('/'), slash - 1)) {
        const QString folder = executable.left(slash);
        if (BundleFolder::isPackageName(folder) && BundleFolder::isApplication(folder)) {
            return folder;
        }
    }
    return {};
}

// An application in one file mounts itself, and runs from there.
QString appImageOf(const QByteArray &environment, const QString &executable)
{
    const QString file = QFile::decodeName(valueIn(environment, "APPIMAGE"));
    const QString mount = QFile::decodeName(valueIn(environment, "APPDIR"));
    const bool runsFromThere = !mount.isEmpty() && executable.startsWith(mount + QLatin1Char('/'));
    return runsFromThere && Programs::isAppImage(file) ? file : QString();
}

QString parentOf(const QString &folder)
{
    // After the name in parentheses, which may hold anything: state, parent.
    const QByteArray status = contentOf(folder + QStringLiteral("/stat"));
    return QString::fromLatin1(status.mid(status.lastIndexOf(')') + 2).split(' ').value(1));
}

QString executableOf(const QString &folder)
{
    QString executable = QFile::symLinkTarget(folder + QStringLiteral("/exe"));
    // The file was replaced by a newer one since.
    if (const QLatin1String suffix(" (deleted)"); executable.endsWith(suffix)) {
        executable.chop(suffix.size());
    }
    return executable;
}

// The environment names the entry and the process it was for. Children inherit both: of a script
// they are what was meant, of a terminal they are something else.
void takeLaunch(ProcessTraits &traits, const QByteArray &environment, qint64 processId)
{
    const QString entry = QFile::decodeName(valueIn(environment, "GIO_LAUNCHED_DESKTOP_FILE"));
    const QString starter =
        QString::fromLatin1(valueIn(environment, "GIO_LAUNCHED_DESKTOP_FILE_PID"));
    if (entry.isEmpty() || starter.toLongLong() <= 0) {
        return;
    }
    QString ancestor = QString::number(processId);
    for (int i = 0; i < mostScripts && ancestor != starter; ++i) {
        ancestor = parentOf(QStringLiteral("/proc/") + ancestor);
        if (!isInterpreter(executableOf(QStringLiteral("/proc/") + ancestor))) {
            break;
        }
    }
    if (ancestor == starter
        && (starter.toLongLong() == processId
            || isInterpreter(executableOf(QStringLiteral("/proc/") + starter)))) {
        traits.launchedEntry = entry;
    } else if (!QFileInfo::exists(QStringLiteral("/proc/") + starter)) {
        traits.orphanedEntry = entry;
    }
}

// The last part of the path of the control group; the unit, where systemd made it.
QString unitOf(const QString &folder)
{
    const QByteArray groups = contentOf(folder + QStringLiteral("/cgroup"));
    for (const QByteArray &line : groups.split('\n')) {
        // The unified hierarchy, or the one that systemd names in the older layout.
        if (line.startsWith("0::") || line.contains(":name=systemd:")) {
            return QString::fromUtf8(line).section(QLatin1Char('/'), -1);
        }
    }
    return {};
}

void takeUnit(ProcessTraits &traits, const QString &folder)
{
    const QString unit = unitOf(folder);
    static const QRegularExpression flatpak(QStringLiteral("^app-flatpak-(.+)-[0-9]+\\.scope$"));
    static const QRegularExpression snap(QStringLiteral("^snap\\.([a-z0-9_-]+)\\."));
    if (const auto inFlatpak = flatpak.match(unit); inFlatpak.hasMatch()) {
        traits.flatpakId = inFlatpak.captured(1);
    } else if (const auto inSnap = snap.match(unit); inSnap.hasMatch()) {
        traits.snapName = inSnap.captured(1);
    } else if (const QString id = SystemdUnit::entryIdIn(unit); !id.isEmpty()) {
        // What a terminal or a menu of the desktop starts lives in the unit of its parent.
        const bool isFirst = unitOf(QStringLiteral("/proc/") + parentOf(folder)) != unit;
        traits.unitEntryId = isFirst ? id : QString();
    }
}

// The file that every sandbox of this kind holds. A process chooses its root, and what lies there
// may be anything.
QString flatpakIdIn(const QString &folder)
{
    QString problem;
    const QByteArray description =
        readSmallFile(folder + QStringLiteral("/root/.flatpak-info"), longestFile, &problem)
            .value_or(QByteArray());
    static const QRegularExpression name(
        QStringLiteral("^\\[Application\\][^\\[]*^name=([^\\n]+)$"),
        QRegularExpression::MultilineOption);
    return name.match(QString::fromUtf8(description)).captured(1);
}

} // namespace

ProcessTraits ProcessTraits::of(qint64 processId)
{
    ProcessTraits traits;
    if (processId <= 0) {
        return traits;
    }
    const QString folder = QStringLiteral("/proc/%1").arg(processId);
    const QByteArray environment = contentOf(folder + QStringLiteral("/environ"));
    takeLaunch(traits, environment, processId);
    traits.executable = executableOf(folder);
    traits.flatpakId = flatpakIdIn(folder);
    takeUnit(traits, folder);
    if (isInterpreter(traits.executable)) {
        traits.script = scriptIn(contentOf(folder + QStringLiteral("/cmdline")));
        traits.executable.clear();
        return traits;
    }
    traits.bundle = appImageOf(environment, traits.executable);
    if (traits.bundle.isEmpty()) {
        traits.bundle = bundleAround(traits.executable);
    }
    return traits;
}

// Between `app-` and the last hyphen stand the launcher, which may be missing, and the ID. Hyphens
// within either are escaped, as every other byte that systemd does not want in a name.
QString SystemdUnit::entryIdIn(const QString &unit)
{
    static const QRegularExpression form(
        QStringLiteral("^app-(?:[^-@]+-)?([^-@]+)(?:-[^-]+\\.scope|(?:@[^@]*)?\\.service)$"));
    const QByteArray name = form.match(unit).captured(1).toUtf8();
    QByteArray id;
    for (qsizetype i = 0; i < name.size(); ++i) {
        const bool isEscape = name.mid(i, 2) == "\\x" && i + 4 <= name.size();
        id += isEscape ? QByteArray::fromHex(name.mid(i + 2, 2)) : name.mid(i, 1);
        i += isEscape ? 3 : 0;
    }
    return QString::fromUtf8(id);
}
