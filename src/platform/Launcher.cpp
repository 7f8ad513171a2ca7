#include "platform/Launcher.h"

#include "platform/Log.h"

LaunchStatus Launcher::open(const QString &, const std::optional<QList<QUrl>> &)
{
    return LaunchStatus::Failed;
}

bool Launcher::canOpenNewWindow(const QString &) const
{
    return false;
}

LaunchStatus Launcher::openNewWindow(const QString &)
{
    return LaunchStatus::Failed;
}

bool Launcher::reveal(const QString &path)
{
    qCWarning(
        lcPlatform, "cannot show %s: this desktop offers no file browser", qUtf8Printable(path));
    return false;
}
