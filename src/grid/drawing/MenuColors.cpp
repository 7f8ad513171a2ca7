#include "grid/drawing/MenuColors.h"

#include "grid/drawing/GridPainter.h"
#include "support/Contrast.h"
#include "support/Shapes.h"

#include <QMenu>
#include <QPalette>

#include <algorithm>

namespace {

// Menus are opaque, on whatever desktop, and look like the panel on a light one.
constexpr QRgb LightDesktop = qRgb(222, 224, 228);
constexpr float LeastShare = 0.85F;
// Of the text in what else there is: the entry under the pointer, frames, what cannot be chosen.
constexpr float HighlightShare = 0.22F;
constexpr float FrameShare = 0.25F;
constexpr float DisabledShare = 0.55F;

QColor mixed(QColor color, float share, const QColor &below)
{
    color.setAlphaF(share);
    return Contrast::blended(color, below);
}

QPalette menuPalette(const GridColors &colors)
{
    const QColor window =
        mixed(colors.winColor, std::max(colors.winAlpha, LeastShare), QColor(LightDesktop));
    const QColor text = contrastingBlackOrWhite(window);
    const QColor highlight = mixed(text, HighlightShare, window);
    QPalette palette(text, window, mixed(Qt::white, FrameShare, window),
        mixed(Qt::black, FrameShare, window), mixed(text, FrameShare, window), text, window);
    palette.setColor(QPalette::Highlight, highlight);
    palette.setColor(QPalette::HighlightedText, contrastingBlackOrWhite(highlight));
    for (const auto role : { QPalette::WindowText, QPalette::Text, QPalette::ButtonText }) {
        palette.setColor(QPalette::Disabled, role, mixed(text, DisabledShare, window));
    }
    return palette;
}

} // namespace

void setMenuColors(QMenu &menu, const GridColors &colors)
{
    menu.setPalette(colors.isWindowSeen() ? menuPalette(colors) : QPalette());
}

void followColors(QMenu &menu, std::function<GridColors()> colors)
{
    QObject::connect(&menu, &QMenu::aboutToShow, &menu,
        [&menu, colors = std::move(colors)] { setMenuColors(menu, colors()); });
}
