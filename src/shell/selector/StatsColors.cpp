#include "shell/selector/StatsColors.h"

#include "grid/drawing/GridPainter.h"
#include "support/Contrast.h"
#include "support/Shapes.h"

#include <algorithm>
#include <array>
#include <optional>

namespace {

constexpr float RowShare = 0.5F;
constexpr float Strong = 0.5F;
constexpr float Faint = 0.3F;

// How much of its strength a fill may lose before the label changes instead.
constexpr float Yielding = 0.1F;
// Between one opacity that is tried and the next.
constexpr float Step = 1.0F / 255;

QColor withAlpha(QColor color, float alpha)
{
    color.setAlphaF(std::clamp(alpha, 0.0F, 1.0F));
    return color;
}

// A label on a fill on a row; empty when neither black nor white can be read there.
std::optional<StatsColors::Capsule> legible(const Backdrop &row, const QColor &fill)
{
    const float alpha = fill.alphaF();
    const float least = alpha * (1 - Yielding);
    for (float weaker = alpha; weaker >= least; weaker -= Step) {
        const QColor tried = withAlpha(fill, weaker);
        if (row.with(tried).carries(withAlpha(fill, 1))) {
            return StatsColors::Capsule { tried, withAlpha(fill, 1) };
        }
    }
    const QColor other = contrastingBlackOrWhite(fill);
    if (row.with(fill).carries(other)) {
        return StatsColors::Capsule { fill, other };
    }
    return {};
}

} // namespace

StatsColors::StatsColors(float winAlpha, const QColor &winColor)
    : _from(withAlpha(winColor, winAlpha))
{
    const bool isSeen = winAlpha >= GridColors::leastVisibleAlpha;
    const QColor foreground = isSeen ? contrastingBlackOrWhite(winColor) : QColor(Qt::white);
    const QColor background = isSeen ? winColor : contrastingBlackOrWhite(foreground);
    const float share = isSeen ? winAlpha : 1;
    // In a window that is to be seen, what is selected looks as if the pointer were on it; without
    // the window it is fainter.
    const std::array fills { 0.0F, Strong * share, Faint * share, isSeen ? Strong * share : Faint };
    const std::array<Capsule *, 4> capsules { &plain, &hovered, &pressed, &selected };
    const Backdrop window = Backdrop().with(_from);
    bool isLegible = false;
    for (float alpha = isSeen ? share * RowShare : 1; !isLegible; alpha += Step) {
        row = withAlpha(background, alpha);
        isLegible = true;
        for (size_t i = 0; i < fills.size(); ++i) {
            const QColor fill = withAlpha(foreground, fills[i]);
            const std::optional<Capsule> capsule = legible(window.with(row), fill);
            *capsules[i] = capsule.value_or(Capsule { fill, foreground });
            // On an opaque row one of black and white can be read.
            isLegible = isLegible && (capsule || alpha >= 1);
        }
    }
}
