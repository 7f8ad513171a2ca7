// The pictures that the cells show: icons in the size and the pixel ratio in which they are drawn.

#pragma once

#include "catalogue/AppList.h"

#include <QHash>
#include <QImage>
#include <QObject>

class IconProvider;

class CellPictures : public QObject
{
    Q_OBJECT

public:
    // The provider must outlive the pictures.
    explicit CellPictures(const IconProvider &icons);

    // To be called before a repaint: the edge of an icon in pixels, the pixels of a point, and how
    // many cells there are.
    void prepare(int edge, qreal ratio, qsizetype cellCount);
    // While one size follows on another, icons are drawn smaller or larger in a quicker way, which
    // is a little rougher. It is off at first.
    void setHurried(bool isHurried);
    // The application's icon. Where a point is more than a pixel the icon is loaded once more in
    // that size; until it arrives, the one in points is drawn larger.
    QImage pictureOf(const AppRef &app);

    // The colours that order the icons, in place of the icons.
    bool areSpectrumsShown() const { return _areSpectrumsShown; }
    void setAreSpectrumsShown(bool areShown) { _areSpectrumsShown = areShown; }

Q_SIGNALS:
    // A better picture of the application has arrived.
    void pictureChanged(const AppRef &app);
    // All are to be asked for anew.
    void picturesLost();

private:
    QImage sharpIconOf(const AppRef &app, const QImage &icon);

    const IconProvider &_icons;
    int _edge = 0;
    qreal _ratio = 1;
    bool _areSpectrumsShown = false;
    bool _isHurried = false;
    // An icon is being asked for: its picture is used by the one who asks.
    bool _isAsking = false;
    // Icons by the cacheKey() of those they stand for: drawn smaller or larger, and loaded anew,
    // null while they are on their way.
    QHash<qint64, QImage> _scaledIcons;
    QHash<qint64, QImage> _sharpIcons;
};
