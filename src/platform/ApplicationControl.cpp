#include "platform/ApplicationControl.h"

std::optional<RunningProcess> ApplicationControl::processOf(const QString &) const
{
    return std::nullopt;
}

bool ApplicationControl::isVisible(const QString &) const
{
    return false;
}

void ApplicationControl::show(const QString &) { }

void ApplicationControl::hide(const QString &) { }

bool ApplicationControl::activate(const QString &)
{
    return false;
}

void ApplicationControl::quit(const QString &) { }
