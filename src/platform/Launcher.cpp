#include "platform/Launcher.h"

LaunchStatus Launcher::open(const QString &, const std::optional<QList<QUrl>> &)
{
    return LaunchStatus::Failed;
}

bool Launcher::reveal(const QString &)
{
    return false;
}
