#include "grid/ColorMenu.h"

#include "catalogue/OTApp.h"
#include "icons/ColorNames.h"
#include "support/Shapes.h"

#include <QActionGroup>
#include <QIcon>
#include <QMenu>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

#include <algorithm>

namespace {

// In points.
constexpr int SwatchSize = 16;
constexpr qreal SwatchRadius = 4;

// A field of the colour, with a tick when it is the one that counts: styles draw their own tick
// in the place of an icon or hardly at all.
QIcon swatch(const SortedColor &color, bool isCounting, qreal devicePixelRatio)
{
    const int pixels = int(std::ceil(SwatchSize * devicePixelRatio));
    QPixmap picture(pixels, pixels);
    picture.setDevicePixelRatio(devicePixelRatio);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    const QPainterPath field = roundedRectanglePath(
        QRectF(0, 0, SwatchSize, SwatchSize).adjusted(1, 1, -1, -1), SwatchRadius);
    painter.fillPath(field, color.color());
    // Fields of the menu's own colour have an edge as well.
    painter.strokePath(field, QPen(QColor(128, 128, 128, 160), 1));
    if (isCounting) {
        QPainterPath tick(QPointF(4.5, 8.5));
        tick.lineTo(7, 11);
        tick.lineTo(11.5, 5.5);
        painter.strokePath(tick,
            QPen(contrastingBlackOrWhite(color.color()), 1.8, Qt::SolidLine, Qt::RoundCap,
                Qt::RoundJoin));
    }
    return QIcon(picture);
}

QString title(const MeasuredColor &measured)
{
    QString name = ColorNames::description(
        measured.color, measured.isGray ? ColorNames::Kind::Gray : ColorNames::Kind::Colorful);
    name[0] = name[0].toUpper();
    return name;
}

} // namespace

QMenu *ColorMenu::of(const OTApp &app, qreal devicePixelRatio, const Choose &choose)
{
    QList<MeasuredColor> colors = app.measuredColors();
    const std::optional<SortedColor> corrected = app.correctedColor();
    const SortedColors &sorted = app.sortedColors();
    const auto isMeasured = [&colors](const SortedColor &color) {
        return std::any_of(colors.cbegin(), colors.cend(),
            [&color](const MeasuredColor &own) { return own.color.looksLike(color); });
    };
    if (corrected && !isMeasured(*corrected)) {
        // The icon has changed since.
        colors.prepend({ *corrected, app.colorSortValue() >= ColorKey::FirstGray });
    }
    if (colors.isEmpty()) {
        return nullptr;
    }
    auto *const menu = new QMenu(tr("Colour"));
    auto *const group = new QActionGroup(menu);
    for (const MeasuredColor &measured : std::as_const(colors)) {
        const bool isCounting = !group->checkedAction() && !sorted.isEmpty()
            && measured.color.looksLike(sorted.first());
        QAction *const action =
            menu->addAction(swatch(measured.color, isCounting, devicePixelRatio), title(measured));
        group->addAction(action);
        action->setCheckable(true);
        action->setChecked(isCounting);
        action->setIconVisibleInMenu(true);
        QObject::connect(
            action, &QAction::triggered, menu, [choose, color = measured.color, isCounting] {
                if (!isCounting) {
                    choose(color);
                }
            });
    }
    menu->addSeparator();
    QAction *const back = menu->addAction(tr("As Measured"), menu, [choose] { choose({}); });
    back->setEnabled(corrected.has_value());
    return menu;
}
