#include "shell/PanelButton.h"

#include "icons/ProgramImages.h"

#include <QEvent>
#include <QPainter>

namespace {

constexpr int Extent = 18; // points

// Below this a window counts as not to be seen.
constexpr float LeastVisibleAlpha = 0.01F;
// Of the brightest component.
constexpr float BrightWindow = 0.73F;

constexpr qreal RestingOpacity = 0.75;
constexpr qreal PressedOpacity = 0.5;

} // namespace

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

void PanelButton::setIsBlack(bool isBlack)
{
    if (isBlack != _isBlack) {
        _isBlack = isBlack;
        _picture = {};
        update();
    }
}

QString PanelButton::imageName() const
{
    return QStringLiteral("%1_button_%2")
        .arg(_kind == Kind::Close ? QLatin1String("close") : QLatin1String("gear"),
            _isBlack ? QLatin1String("black") : QLatin1String("white"));
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
    painter.setOpacity(isDown() ? PressedOpacity : underMouse() ? 1 : RestingOpacity);
    painter.drawPixmap(0, 0, picture());
}

bool needsBlackButtons(float winAlpha, const QColor &winColor)
{
    return winAlpha < LeastVisibleAlpha || winColor.valueF() > BrightWindow;
}
