#include "grid/DragPicture.h"

#include <QBitmap>
#include <QCoreApplication>
#include <QEvent>
#include <QImage>
#include <QPainter>
#include <QWindow>

namespace {

constexpr qreal BlendedOpacity = 0.5;

QPixmap faded(const QImage &icon)
{
    QPixmap picture(icon.size());
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setOpacity(BlendedOpacity);
    painter.drawImage(0, 0, icon);
    return picture;
}

// With edges that hide what is below them, or nothing.
QPixmap sharplyEdged(const QImage &icon)
{
    QImage picture = icon.convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < picture.height(); ++y) {
        auto *const line = reinterpret_cast<QRgb *>(picture.scanLine(y));
        for (int x = 0; x < picture.width(); ++x) {
            line[x] = qAlpha(line[x]) < 128 ? 0 : line[x] | 0xff000000;
        }
    }
    return QPixmap::fromImage(picture);
}

} // namespace

DragPicture::DragPicture(const QImage &icon, qreal ratio, Display display)
    : _pixmap(display == Display::Blended ? faded(icon) : sharplyEdged(icon))
{
    _pixmap.setDevicePixelRatio(ratio);
    if (display == Display::Plain && !icon.isNull()) {
        QCoreApplication::instance()->installEventFilter(this);
    }
}

// As soon as the window is there, and before it is shown. Qt would shape it, but asks the display
// about compositing too late. By its class, which is all that is known of it.
bool DragPicture::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::PlatformSurface && watched->inherits("QShapedPixmapWindow")) {
        QPixmap shape = _pixmap;
        shape.setDevicePixelRatio(1);
        const QSizeF size = _pixmap.deviceIndependentSize();
        const QBitmap mask = shape.scaled(size.toSize(), Qt::IgnoreAspectRatio).mask();
        static_cast<QWindow *>(watched)->setMask(mask);
    }
    return QObject::eventFilter(watched, event);
}
