#include "shell/panel/PanelButton.h"

#include "grid/drawing/GridPainter.h"
#include "icons/ProgramImages.h"
#include "support/Contrast.h"
#include "support/Shapes.h"

#include <QEvent>
#include <QPainter>
#include <QPainterPath>

namespace {

constexpr int Extent = 18; // points

// Of the brightest component.
constexpr float BrightWindow = 0.73F;

constexpr qreal PressedOpacity = 0.5;

QColor withAlpha(QColor color, double alpha)
{
    color.setAlphaF(float(alpha));
    return color;
}

} // namespace

PanelButtonLook::PanelButtonLook(float winAlpha, const QColor &winColor)
{
    const bool isSeen = winAlpha >= GridColors::leastVisibleAlpha;
    isBlack = !isSeen || winColor.valueF() > BrightWindow;
    const QColor color = isBlack ? Qt::black : Qt::white;
    if (isSeen && Contrast::ratio(color, winColor) < Contrast::Enough) {
        isBlack = !isBlack;
    }
    const QColor ink = isBlack ? Qt::black : Qt::white;
    const QColor below = isSeen ? winColor : contrastingBlackOrWhite(ink);
    if (!Backdrop().with(withAlpha(below, 1)).carries(withAlpha(ink, restingOpacity))) {
        restingOpacity = 1;
    }
    plate = Backdrop()
                .with(withAlpha(winColor, winAlpha))
                .strengthened(withAlpha(below, 0), withAlpha(ink, restingOpacity));
}

PanelButton::PanelButton(Kind kind, QWidget *parent)
    : QAbstractButton(parent)
    , _kind(kind)
{
    setFocusPolicy(Qt::NoFocus);
    setCursor(Qt::ArrowCursor);
    // Painted anew when the pointer comes and goes.
    setAttribute(Qt::WA_Hover);
    setFixedSize(sizeHint());
    updateTexts();
}

QSize PanelButton::sizeHint() const
{
    return { Extent, Extent };
}

void PanelButton::setLook(const PanelButtonLook &look)
{
    if (look != _look) {
        _look = look;
        _picture = {};
        update();
    }
}

QString PanelButton::imageName() const
{
    return QStringLiteral("%1_button_%2")
        .arg(_kind == Kind::Close ? QLatin1String("close") : QLatin1String("gear"),
            _look.isBlack ? QLatin1String("black") : QLatin1String("white"));
}

void PanelButton::updateTexts()
{
    const QString text = _kind == Kind::Close ? tr("Close") : tr("Preferences");
    setAccessibleName(text);
    setToolTip(text);
    if (_kind == Kind::Gear) {
        setAccessibleDescription(tr("Menu key, while no icon is selected"));
    }
}

bool PanelButton::event(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange) {
        updateTexts();
    }
    return QAbstractButton::event(event);
}

const QPixmap &PanelButton::picture()
{
    const qreal ratio = devicePixelRatioF();
    if (_picture.isNull() || _picture.devicePixelRatio() != ratio) {
        _picture = QPixmap::fromImage(
            ProgramImages::picture(imageName(), (QSizeF(size()) * ratio).toSize()));
        _picture.setDevicePixelRatio(ratio);
    }
    return _picture;
}

void PanelButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(capsulePath(rect()), _look.plate);
    painter.setOpacity(isDown() ? PressedOpacity : underMouse() ? 1 : _look.restingOpacity);
    painter.drawPixmap(0, 0, picture());
}
