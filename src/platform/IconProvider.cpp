#include "platform/IconProvider.h"

IconSource IconProvider::resolve(const QString &, int) const
{
    return {};
}

QImage IconProvider::decode(const IconSource &, int) const
{
    return {};
}

DecodedIcon IconProvider::decodeFrom(const IconSource &source, int size) const
{
    const IconOrigin origin { source.file, FileStamp::of(source.file) };
    return { decode(source, size), { origin } };
}

QImage IconProvider::tryDecode(const IconSource &, int, int, QString *problem) const
{
    *problem = QStringLiteral("this desktop reads no pictures");
    return {};
}
