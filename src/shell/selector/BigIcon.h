// An application drawn large in the middle of a view: its icon, below it its name and, in small
// letters, the folder that it lies in.

#pragma once

#include <QRect>
#include <QSize>
#include <QString>

class QColor;
class QImage;
class QPainter;

class BigIcon final
{
public:
    // Of the icon, in points.
    static constexpr int Width = 64;

    BigIcon() = default;
    // Name and folder are shortened where they are too wide for the view.
    BigIcon(const QString &name, const QString &folder, const QSize &viewSize);

    // All that is drawn, in whole points from the upper left corner of the view; empty for what was
    // made from nothing.
    const QRect &rect() const { return _rect; }

    // The icon may be of any size.
    void draw(
        QPainter &painter, const QImage &icon, const QColor &foreground, const QColor &plate) const;

private:
    QString _name;
    QString _folder;
    QPoint _middle;
    QRect _rect;
};
