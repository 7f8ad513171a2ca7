#include "icons/ProgramImages.h"

#include <QPainter>
#include <QPixmap>
#include <QSvgRenderer>

QImage ProgramImages::picture(const QString &name, const QSize &pixels)
{
    QSvgRenderer renderer(QStringLiteral(":/images/%1.svg").arg(name));
    if (!renderer.isValid()) {
        return {};
    }
    QImage picture(pixels, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    renderer.render(&painter);
    return picture;
}

QIcon ProgramImages::icon(const QString &name)
{
    QIcon icon;
    for (const int edge : { 16, 22, 32, 48, 64, 128 }) {
        const QImage drawn = picture(name, { edge, edge });
        if (!drawn.isNull()) {
            icon.addPixmap(QPixmap::fromImage(drawn));
        }
    }
    return icon;
}
