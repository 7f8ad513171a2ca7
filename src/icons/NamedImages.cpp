#include "icons/NamedImages.h"

#include "icons/ProgramImages.h"

#include <QString>

namespace {

// Edge in pixels; the grid scales them to the size of its icons.
constexpr int Extent = 128;

QImage read(const QString &name)
{
    return ProgramImages::picture(name, { Extent, Extent });
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
