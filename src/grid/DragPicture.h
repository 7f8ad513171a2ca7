// What is seen under the pointer while an icon is dragged.

#pragma once

#include <QObject>
#include <QPixmap>

class DragPicture final : public QObject
{
    Q_OBJECT

public:
    // Blended: the display mixes windows with what is below them, so the picture may be half
    // transparent. Otherwise, for as long as this lives, the window in which Qt shows it is cut to
    // the shape of the icon; its corners would be filled.
    enum class Display { Blended, Plain };

    // The icon has so many pixels a point.
    DragPicture(const QImage &icon, qreal ratio, Display display);

    const QPixmap &pixmap() const { return _pixmap; }

protected:
    // Of the application.
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QPixmap _pixmap;
};
