#include "grid/drawing/PoofEffect.h"

#include <QEasingCurve>
#include <QPainter>
#include <QRadialGradient>
#include <QScreen>
#include <QStyle>

#include <array>

namespace {

constexpr int Duration = 350; // milliseconds
constexpr int Radius = 36; // points

// A circle of the puff, with the puff's radius as the unit: where it comes to rest, and how large.
struct Circle
{
    QPointF place;
    qreal radius = 0;
};

// Unevenly about the middle, or it would look like a flower.
constexpr std::array<Circle, 7> Circles { {
    { { -0.46, -0.20 }, 0.40 },
    { { 0.30, -0.46 }, 0.34 },
    { { 0.52, 0.10 }, 0.42 },
    { { 0.10, 0.50 }, 0.38 },
    { { -0.38, 0.40 }, 0.30 },
    { { -0.08, -0.56 }, 0.26 },
    { { 0.02, -0.02 }, 0.44 },
} };

// How large a circle is to begin with, as a part of what it grows to.
constexpr qreal FirstSize = 0.45;

QColor smoke(int lightness, qreal opacity)
{
    return QColor::fromRgbF(
        float(lightness) / 255, float(lightness) / 255, float(lightness + 4) / 255, float(opacity));
}

} // namespace

void PoofEffect::show(const QPoint &onScreen, QWidget *near)
{
    if (near->style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, near) <= 0) {
        return;
    }
    auto *const puff = new PoofEffect(near->window());
    puff->move(onScreen - puff->rect().center());
    puff->setVisible(true);
    puff->_animation.start();
}

PoofEffect::PoofEffect(QWidget *near)
    // A tool tip is left alone by window managers, and lies in front of every panel.
    : QWidget(near,
        Qt::ToolTip | Qt::FramelessWindowHint | Qt::WindowTransparentForInput
            | Qt::WindowDoesNotAcceptFocus | Qt::NoDropShadowWindowHint)
{
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    setFixedSize(2 * Radius, 2 * Radius);
    _animation.setDuration(Duration);
    _animation.setStartValue(0.0);
    _animation.setEndValue(1.0);
    connect(&_animation, &QVariantAnimation::valueChanged, this, qOverload<>(&QWidget::update));
    connect(&_animation, &QVariantAnimation::finished, this, &QObject::deleteLater);
}

void PoofEffect::draw(QPainter &painter, const QPointF &center, qreal radius, qreal moment)
{
    const qreal grown = QEasingCurve(QEasingCurve::OutQuad).valueForProgress(moment);
    const qreal opacity = 1 - moment * moment * moment;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    for (const Circle &circle : Circles) {
        const QPointF middle = center + circle.place * radius * grown;
        const qreal size = circle.radius * radius * (FirstSize + (1 - FirstSize) * grown);
        QRadialGradient look(middle, size);
        look.setColorAt(0, smoke(250, 0.95 * opacity));
        look.setColorAt(0.6, smoke(230, 0.8 * opacity));
        // The darker rim keeps it visible before something white.
        look.setColorAt(0.85, smoke(135, 0.4 * opacity));
        look.setColorAt(1, smoke(120, 0));
        painter.setBrush(look);
        painter.drawEllipse(middle, size, size);
    }
    painter.restore();
}

void PoofEffect::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    draw(painter, QRectF(rect()).center(), Radius, _animation.currentValue().toReal());
}
