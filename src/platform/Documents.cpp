#include "platform/Documents.h"

bool Documents::canAccept(const QString &, const QUrl &) const
{
    return false;
}

QStringList Documents::applicationsFor(const QUrl &) const
{
    return {};
}
