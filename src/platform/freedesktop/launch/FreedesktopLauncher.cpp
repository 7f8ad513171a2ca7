#include "platform/freedesktop/launch/FreedesktopLauncher.h"

#include "platform/freedesktop/base/GioPointer.h"
#include "platform/freedesktop/base/Log.h"
#include "platform/freedesktop/base/Programs.h"
#include "platform/freedesktop/bus/SessionBus.h"
#include "platform/freedesktop/entries/BundleFolder.h"
#include "platform/freedesktop/launch/EntryLaunch.h"
#include "platform/freedesktop/launch/LaunchContext.h"
#include "platform/freedesktop/launch/NewWindow.h"
#include "platform/freedesktop/launch/ProgramLaunch.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QFile>
#include <QFileInfo>

#include <gio/gdesktopappinfo.h>
#include <utility>

namespace {

constexpr int longestAnswer = 5000; // milliseconds

bool showInFileBrowser(const QString &path)
{
    QDBusMessage request =
        QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.FileManager1"),
            QStringLiteral("/org/freedesktop/FileManager1"),
            QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowItems"));
    const QString uri = QString::fromUtf8(QUrl::fromLocalFile(path).toEncoded());
    request << QStringList { uri } << QString::fromUtf8(LaunchContext().startupId());
    const QDBusMessage answer =
        QDBusConnection::sessionBus().call(request, QDBus::Block, longestAnswer);
    // A browser that is slow to answer has been asked all the same, and would only show the folder
    // twice.
    return answer.type() == QDBusMessage::ReplyMessage
        || answer.errorName() == QLatin1String("org.freedesktop.DBus.Error.NoReply");
}

bool openFolder(const QString &folder)
{
    const GioPointer<GAppInfo> handler(g_app_info_get_default_for_type("inode/directory", FALSE));
    if (!handler || !G_IS_DESKTOP_APP_INFO(handler.get())) {
        return false;
    }
    const char *const entry = g_desktop_app_info_get_filename(G_DESKTOP_APP_INFO(handler.get()));
    return entry != nullptr
        && launchEntry(QFile::decodeName(entry), { QUrl::fromLocalFile(folder) })
        == LaunchStatus::Launched;
}

bool isEntry(const QFileInfo &item)
{
    return item.isFile() && item.filePath().endsWith(QLatin1String(".desktop"));
}

// An AppImage, or the folder of a bundle.
LaunchStatus launchBundle(const QString &path, const QList<QUrl> &documents)
{
    QString program = QFileInfo(path).isDir() ? BundleFolder::executableOf(path) : QString();
    if (Programs::isAppImage(path)) {
        program = path;
    }
    return program.isEmpty() ? LaunchStatus::CannotExecute
                             : launchProgram(path, program, documents);
}

} // namespace

FreedesktopLauncher::FreedesktopLauncher(std::function<bool(const QString &bundlePath)> raise)
    : _raise(std::move(raise))
{
    SessionBus::neverStartOne();
}

LaunchStatus FreedesktopLauncher::open(
    const QString &bundlePath, const std::optional<QList<QUrl>> &documents)
{
    const QFileInfo item(bundlePath);
    if (!item.exists()) {
        return LaunchStatus::FileNotFound;
    }
    const QList<QUrl> toOpen = documents.value_or(QList<QUrl>());
    if (toOpen.isEmpty() && _raise && _raise(bundlePath)) {
        return LaunchStatus::Launched;
    }
    return isEntry(item) ? launchEntry(bundlePath, toOpen) : launchBundle(bundlePath, toOpen);
}

bool FreedesktopLauncher::canOpenNewWindow(const QString &bundlePath) const
{
    const QFileInfo item(bundlePath);
    return isEntry(item) ? NewWindow::ofEntry(bundlePath).by != NewWindow::By::Nothing
                         : item.exists();
}

LaunchStatus FreedesktopLauncher::openNewWindow(const QString &bundlePath)
{
    const QFileInfo item(bundlePath);
    if (!item.exists()) {
        return LaunchStatus::FileNotFound;
    }
    if (!isEntry(item)) {
        return launchBundle(bundlePath, {});
    }
    const NewWindow window = NewWindow::ofEntry(bundlePath);
    switch (window.by) {
    case NewWindow::By::Action:
        return launchEntryAction(bundlePath, QString::fromUtf8(window.action));
    case NewWindow::By::Start:
        return launchEntryAgain(bundlePath);
    case NewWindow::By::Nothing:
        break;
    }
    return LaunchStatus::CannotExecute;
}

bool FreedesktopLauncher::reveal(const QString &path)
{
    const QString folder = QFileInfo(path).absolutePath();
    const char *reason = "its folder is gone";
    if (QFileInfo::exists(folder)) {
        if (showInFileBrowser(path) || openFolder(folder)) {
            return true;
        }
        reason = "no file browser could be asked";
    }
    qCWarning(lcPlatform, "cannot show %s: %s", qUtf8Printable(path), reason);
    return false;
}
