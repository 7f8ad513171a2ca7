#include "platform/Documents.h"

QSet<QString> Documents::applicationsThatAccept(const QUrl &, const QStringList &) const
{
    return {};
}

QSet<QString> Documents::applicationsThatPrefer(const QUrl &, const QStringList &) const
{
    return {};
}
