#include "platform/ApplicationActions.h"

#include "platform/Log.h"

QList<ApplicationActions::Action> ApplicationActions::actionsOf(const QString &) const
{
    return {};
}

bool ApplicationActions::perform(const QString &bundlePath, const QString &actionId)
{
    qCWarning(lcPlatform, "cannot perform %s of %s: this desktop offers no actions",
        qUtf8Printable(actionId), qUtf8Printable(bundlePath));
    return false;
}
