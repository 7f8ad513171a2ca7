#include "icons/NamedImages.h"

#include <QString>

namespace {

QImage read(const QString &name)
{
    return QImage(QStringLiteral(":/images/%1.png").arg(name))
        .convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

} // namespace

const QImage &NamedImages::dot()
{
    static const QImage image = read(QStringLiteral("dot"));
    return image;
}

const QImage &NamedImages::notfound()
{
    static const QImage image = read(QStringLiteral("notfound"));
    return image;
}
