#include "shell/panel/EmptyHint.h"

#include "catalogue/OTAppManager.h"
#include "grid/OTIconView.h"
#include "support/NotificationCenter.h"
#include "support/Shapes.h"

#include <QPainter>
#include <QPainterPath>

namespace {

// In points.
constexpr int SideMargin = 24;
constexpr int PlateMargin = 10;
constexpr qreal PlateRadius = 10;

} // namespace

EmptyHint::EmptyHint(OTAppManager &appManager, OTIconView &iconView, QWidget *parent)
    : QLabel(parent)
    , _iconView(iconView)
{
    setAlignment(Qt::AlignCenter);
    setWordWrap(true);
    setContentsMargins(SideMargin, 0, SideMargin, 0);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    connect(&iconView, &OTIconView::groupShownChanged, this, &EmptyHint::updateText);
    connect(&appManager, &OTAppManager::isBusyScanningChanged, this, &EmptyHint::updateText);
    // The grid has laid out its list by then.
    connect(&appManager, &OTAppManager::didChange, this, &EmptyHint::updateText);
    updateColors();
    updateText();
}

void EmptyHint::updateText()
{
    // A line for each sentence.
    setText(_iconView.emptyHint().replace(QLatin1String(". "), QLatin1String(".\n")));
}

void EmptyHint::updateColors()
{
    const GridColors &colors = _iconView.colors();
    QPalette text = palette();
    text.setColor(QPalette::WindowText, colors.textColor);
    setPalette(text);
    _plate = colors.textPlate();
    update();
}

void EmptyHint::paintEvent(QPaintEvent *event)
{
    if (!text().isEmpty() && _plate.alpha() > 0) {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const QRect lines =
            fontMetrics().boundingRect(contentsRect(), int(alignment()) | Qt::TextWordWrap, text());
        painter.fillPath(
            roundedRectanglePath(
                lines.adjusted(-PlateMargin, -PlateMargin, PlateMargin, PlateMargin), PlateRadius),
            _plate);
    }
    QLabel::paintEvent(event);
}
