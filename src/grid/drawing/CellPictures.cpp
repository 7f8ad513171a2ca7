#include "grid/drawing/CellPictures.h"

#include "catalogue/OTApp.h"
#include "icons/IconLoader.h"
#include "icons/NamedImages.h"

#include <QPainter>
#include <QPointer>
#include <QScopedValueRollback>

namespace {

// Out of four pixels each, not of all that a new one covers.
QImage quicklyScaled(const QImage &icon, int edge)
{
    const QSize size = icon.size().scaled(edge, edge, Qt::KeepAspectRatio);
    QImage scaled(size, QImage::Format_ARGB32_Premultiplied);
    scaled.fill(Qt::transparent);
    QPainter painter(&scaled);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(QRect(QPoint(0, 0), size), icon);
    return scaled;
}

// By way of those kept from an earlier run: a full grid takes longer to scale than to draw.
QImage smoothlyScaled(const QImage &icon, int edge)
{
    IconLoader &loader = IconLoader::sharedIconLoader();
    QImage scaled = loader.keptScaled(icon, edge);
    if (scaled.isNull()) {
        scaled = icon.scaled(edge, edge, Qt::KeepAspectRatio, Qt::SmoothTransformation);
        loader.keepScaled(icon, scaled);
    }
    return scaled;
}

} // namespace

CellPictures::CellPictures(const IconProvider &icons)
    : _icons(icons)
{
    // Icons of which a part is still right keep their keys.
    connect(&IconLoader::sharedIconLoader(), &IconLoader::iconsLost, this, [this] {
        _scaledIcons.clear();
        _sharpIcons.clear();
        Q_EMIT picturesLost();
    });
}

void CellPictures::setHurried(bool isHurried)
{
    if (_isHurried && !isHurried) {
        _scaledIcons.clear();
    }
    _isHurried = isHurried;
}

void CellPictures::prepare(int edge, qreal ratio, qsizetype cellCount)
{
    if (edge != _edge) {
        _scaledIcons.clear();
        _sharpIcons.clear();
        _edge = edge;
    }
    _ratio = ratio;
    // Icons come anew now and then, and no signal says which of the old ones are gone.
    for (QHash<qint64, QImage> *const icons : { &_scaledIcons, &_sharpIcons }) {
        if (icons->size() > 2 * cellCount) {
            icons->clear();
        }
    }
}

QImage CellPictures::pictureOf(const AppRef &app)
{
    QImage icon = _areSpectrumsShown ? app->spectrumIcon() : app->icon();
    if (_ratio > 1 && !_areSpectrumsShown) {
        icon = sharpIconOf(app, icon);
    }
    if (icon.width() == _edge) {
        return icon;
    }
    QImage &scaled = _scaledIcons[icon.cacheKey()];
    if (scaled.isNull()) {
        scaled = _isHurried ? quicklyScaled(icon, _edge) : smoothlyScaled(icon, _edge);
    }
    return scaled;
}

// An icon is loaded in points, which is how it is measured.
QImage CellPictures::sharpIconOf(const AppRef &app, const QImage &icon)
{
    const qint64 key = icon.cacheKey();
    const bool isPlaceholder =
        key == NamedImages::dot().cacheKey() || key == NamedImages::notfound().cacheKey();
    if (isPlaceholder || icon.width() >= _edge) {
        return icon;
    }
    const auto sharp = _sharpIcons.constFind(key);
    if (sharp != _sharpIcons.constEnd()) {
        return sharp->isNull() ? icon : *sharp;
    }
    _sharpIcons.insert(key, {});
    const auto take = [pictures = QPointer(this), app, key](const LoadedIcon &loaded) {
        if (pictures && !loaded.image.isNull() && pictures->_sharpIcons.contains(key)) {
            pictures->_sharpIcons[key] = loaded.image;
            if (!pictures->_isAsking) {
                Q_EMIT pictures->pictureChanged(app);
            }
        }
    };
    // One that is at hand is there when this returns.
    const QScopedValueRollback<bool> asking(_isAsking, true);
    IconLoader::sharedIconLoader().addOperation({ app->path(), _edge, take }, _icons);
    const QImage atHand = _sharpIcons.value(key);
    return atHand.isNull() ? icon : atHand;
}
