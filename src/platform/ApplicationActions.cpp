#include "platform/ApplicationActions.h"

QList<ApplicationActions::Action> ApplicationActions::actionsOf(const QString &) const
{
    return {};
}

bool ApplicationActions::perform(const QString &, const QString &)
{
    return false;
}
