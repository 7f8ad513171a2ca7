#include "shell/selector/StatsLayout.h"

#include <algorithm>
#include <cmath>

StatsLayout::StatsLayout(const QList<QSizeF> &textSizes, qreal height)
{
    const qreal capsuleHeight = std::max(height - 2, 0.0);
    const qreal end = capsuleHeight / 2;
    qreal x = end + 1;
    for (const QSizeF &size : textSizes) {
        if (!_buttons.isEmpty()) {
            x += capsuleHeight + 1;
        }
        const QRectF text(x, 1, std::ceil(size.width()), std::ceil(size.height()));
        _buttons.append({ text, { x - end, 1, text.width() + capsuleHeight, capsuleHeight } });
        x += size.width();
    }
    _totalWidth = int(std::lround(end + 1 + x));
}

qsizetype StatsLayout::fittingWording(
    const QList<QList<QSizeF>> &wordings, qreal height, qreal available)
{
    for (qsizetype i = 0; i < wordings.size(); ++i) {
        if (StatsLayout(wordings[i], height).totalWidth() <= available) {
            return i;
        }
    }
    return wordings.size() - 1;
}

int StatsLayout::buttonAt(const QPointF &point) const
{
    const auto found = std::find_if(_buttons.cbegin(), _buttons.cend(),
        [&point](const Button &button) { return button.capsule.contains(point); });
    return found == _buttons.cend() ? -1 : int(found - _buttons.cbegin());
}
