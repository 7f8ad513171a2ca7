#include "platform/freedesktop/login/FreedesktopLoginItems.h"

#include "platform/freedesktop/base/FileState.h"
#include "platform/freedesktop/base/KeyFile.h"
#include "platform/freedesktop/base/Log.h"
#include "platform/freedesktop/base/Programs.h"
#include "platform/freedesktop/base/SessionFolders.h"
#include "platform/freedesktop/login/AutostartText.h"
#include "support/files/FileWatch.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#include <algorithm>
#include <utility>

using AutostartText::withValue;

namespace {

constexpr const char *hiddenKey = "Hidden";
constexpr const char *gnomeKey = "X-GNOME-Autostart-enabled";

QString fileNameOf(const LoginItem &item)
{
    return item.id + QStringLiteral(".desktop");
}

QStringList entryNamesIn(const QString &folder)
{
    return QDir(folder).entryList(
        { QStringLiteral("*.desktop") }, QDir::Files | QDir::System | QDir::Hidden);
}

// Exec has a percent sign twice where it means one.
QString programOf(const DesktopEntry &entry)
{
    return QString(entry.program).replace(QLatin1String("%%"), QLatin1String("%"));
}

bool isSameProgram(const QString &program, const QString &path)
{
    if (program.isEmpty()) {
        return false;
    }
    const QString found =
        QDir::isAbsolutePath(program) ? program : QStandardPaths::findExecutable(program);
    const QString file = QFileInfo(found).canonicalFilePath();
    return found == path || (!file.isEmpty() && file == QFileInfo(path).canonicalFilePath());
}

bool isProgramThere(const DesktopEntry &entry)
{
    return Programs::isThere(programOf(entry))
        && (entry.tryExec.isEmpty() || Programs::isThere(entry.tryExec));
}

} // namespace

FreedesktopLoginItems::FreedesktopLoginItems(QStringList desktops)
    : _desktops(std::move(desktops))
{
    const QStringList folders { SessionFolders::configurationHome() };
    for (const QString &folder : folders + SessionFolders::sharedConfiguration()) {
        _folders.append(folder + QStringLiteral("/autostart"));
    }
    _folders.removeDuplicates();
}

FreedesktopLoginItems::~FreedesktopLoginItems() = default;

QString FreedesktopLoginItems::userPath(const QString &fileName) const
{
    return _folders.first() + QLatin1Char('/') + fileName;
}

std::vector<FreedesktopLoginItems::Entry> FreedesktopLoginItems::entriesOf(
    const LoginItem &item) const
{
    QStringList names;
    for (const QString &folder : _folders) {
        names += entryNamesIn(folder);
    }
    names.removeDuplicates();
    std::vector<Entry> entries;
    for (const QString &name : std::as_const(names)) {
        Entry entry = read(name);
        if (name == fileNameOf(item) || isSameProgram(programOf(entry.content), item.program)) {
            entries.push_back(std::move(entry));
        }
    }
    return entries;
}

FreedesktopLoginItems::Entry FreedesktopLoginItems::read(const QString &fileName) const
{
    Entry entry;
    entry.fileName = fileName;
    const QFileInfo own(userPath(fileName));
    entry.isLink = own.isSymLink();
    entry.isUsers = own.exists() || entry.isLink;
    for (const QString &folder : _folders) {
        const QString path = folder + QLatin1Char('/') + fileName;
        const bool isOwn = entry.isUsers && folder == _folders.first();
        if (!isOwn && !QFileInfo::exists(path)) {
            continue;
        }
        QString problem;
        const QByteArray text =
            readSmallFile(path, DesktopEntry::maximumSize, &problem).value_or(QByteArray());
        if (isOwn) {
            entry.text = text;
        } else {
            entry.sharedText = text;
            break;
        }
    }
    if (!entry.isUsers) {
        entry.text = entry.sharedText;
    }
    entry.content = DesktopEntry::fromData(entry.text, {});
    return entry;
}

bool FreedesktopLoginItems::isEnabled(const Entry &entry) const
{
    const QString gnomeValue = keyFileValue(entry.text, "Desktop Entry", gnomeKey);
    return entry.content.kind == DesktopEntry::Kind::Application && !entry.content.isHidden
        && gnomeValue != QLatin1String("false") && gnomeValue != QLatin1String("0")
        && entry.content.isShownIn(_desktops) && isProgramThere(entry.content);
}

bool FreedesktopLoginItems::contains(const LoginItem &item) const
{
    const std::vector<Entry> entries = entriesOf(item);
    return std::any_of(
        entries.begin(), entries.end(), [this](const Entry &entry) { return isEnabled(entry); });
}

QString FreedesktopLoginItems::setContained(const LoginItem &item, bool isContained)
{
    if (isContained) {
        return contains(item) ? QString() : enable(item);
    }
    QString problem;
    for (const Entry &entry : entriesOf(item)) {
        if (isEnabled(entry)) {
            const QString reason = disable(entry, item);
            problem = problem.isEmpty() ? reason : problem;
        }
    }
    return problem;
}

// Switches on the entry that there is, the one of the item's own name if there are several.
QString FreedesktopLoginItems::enable(const LoginItem &item) const
{
    const std::vector<Entry> entries = entriesOf(item);
    auto entry = std::find_if(entries.begin(), entries.end(),
        [&item](const Entry &one) { return one.fileName == fileNameOf(item); });
    entry = entry == entries.end() ? entries.begin() : entry;
    if (entry == entries.end()) {
        return write(fileNameOf(item), AutostartText::entryFor(item));
    }
    // That it is hidden may be all the entry says, or it is damaged.
    if (entry->content.kind != DesktopEntry::Kind::Application) {
        return write(
            fileNameOf(item), AutostartText::entryFor(item), FileReplacement::Former::KeptForADay);
    }
    const QByteArray text = enabledText(*entry, item);
    return entry->isUsers && text == entry->sharedText ? remove(entry->fileName)
                                                       : write(entry->fileName, text);
}

QByteArray FreedesktopLoginItems::enabledText(const Entry &entry, const LoginItem &item) const
{
    QByteArray text = withValue(entry.text, hiddenKey, {});
    text = withValue(text, gnomeKey, {});
    if (!entry.content.isShownIn(_desktops)) {
        text = withValue(withValue(text, "OnlyShowIn", {}), "NotShowIn", {});
    }
    if (!isProgramThere(entry.content)) {
        text = withValue(text, "Exec", AutostartText::commandLine(item));
        text = withValue(text, "TryExec", {});
    }
    return text;
}

// The user has put nothing into an entry that is as it was first written, or only a link.
QString FreedesktopLoginItems::disable(const Entry &entry, const LoginItem &item) const
{
    const bool isUnchanged = entry.isLink || entry.text == AutostartText::entryFor(item);
    return entry.isUsers && entry.sharedText.isEmpty() && isUnchanged
        ? remove(entry.fileName)
        : write(entry.fileName, withValue(entry.text, hiddenKey, QByteArrayLiteral("true")));
}

QString FreedesktopLoginItems::write(
    const QString &fileName, const QByteArray &text, FileReplacement::Former former) const
{
    const QString path = userPath(fileName);
    QDir().mkpath(_folders.first());
    // A link may lead to the entry that the menus show, which is not to be changed.
    if (QFileInfo(path).isSymLink()) {
        const QString problem = remove(fileName);
        if (!problem.isEmpty()) {
            return problem;
        }
    }
    const QString problem = FileReplacement::replace(path, text, former);
    if (!problem.isEmpty()) {
        qCWarning(lcPlatform, "cannot write %s: %s", qUtf8Printable(path), qUtf8Printable(problem));
    }
    return problem;
}

QString FreedesktopLoginItems::remove(const QString &fileName) const
{
    QFile file(userPath(fileName));
    if (file.remove()) {
        return {};
    }
    qCWarning(lcPlatform, "cannot remove %s: %s", qUtf8Printable(file.fileName()),
        qUtf8Printable(file.errorString()));
    return file.errorString();
}

void FreedesktopLoginItems::setWatched(bool isWatched)
{
    if (!isWatched) {
        _watches.clear();
    } else if (_watches.empty()) {
        watch();
    }
}

// The kernel tells of a change in place only for the files that are named, so they are named anew
// after each change.
void FreedesktopLoginItems::watch()
{
    _watches.clear();
    for (const QString &folder : std::as_const(_folders)) {
        // The first one stands for the folder, and need not exist.
        QStringList paths { folder + QStringLiteral("/.desktop") };
        for (const QString &name : entryNamesIn(folder)) {
            paths.append(folder + QLatin1Char('/') + name);
        }
        _watches.push_back(std::make_unique<FileWatch>(paths));
        const auto lookAgain = [this] {
            if (!_watches.empty()) {
                watch();
                Q_EMIT changed();
            }
        };
        // Queued, for it ends the object that emits.
        connect(_watches.back().get(), &FileWatch::changed, this, lookAgain, Qt::QueuedConnection);
    }
}
