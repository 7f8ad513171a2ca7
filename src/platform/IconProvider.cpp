#include "platform/IconProvider.h"

IconSource IconProvider::resolve(const QString &, int) const
{
    return {};
}

QImage IconProvider::decode(const IconSource &, int) const
{
    return {};
}

int IconProvider::storedSize(const IconSource &, int) const
{
    return 0;
}
