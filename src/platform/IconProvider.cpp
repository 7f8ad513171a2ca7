#include "platform/IconProvider.h"

IconSource IconProvider::resolve(const QString &, int) const
{
    return {};
}

QImage IconProvider::decode(const IconSource &, int) const
{
    return {};
}

QImage IconProvider::tryDecode(const IconSource &, int, int, QString *problem) const
{
    *problem = QStringLiteral("this desktop reads no pictures");
    return {};
}
