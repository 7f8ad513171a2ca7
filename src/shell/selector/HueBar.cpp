#include "shell/selector/HueBar.h"

#include "catalogue/OTApp.h"
#include "catalogue/OTAppManager.h"
#include "grid/OTIconView.h"
#include "grid/layout/GridInput.h"
#include "grid/layout/GridKeys.h"
#include "icons/ColorNames.h"
#include "shell/selector/HueBarAccessible.h"
#include "support/NotificationCenter.h"
#include "support/Shapes.h"
#include "support/UserDefaults.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

const QString showHueBarKey = QStringLiteral("showHueBar");

// In points.
constexpr int LeastWidth = 56;
constexpr int LargestWidth = 240;
// Of the colours, at rest and while there is a window.
constexpr qreal RestingHeight = 5;
constexpr qreal ActiveHeight = 8;
// Of the window, beyond the colours.
constexpr qreal ThumbMargin = 2.5;
constexpr qreal LeastThumbWidth = 10;
// Room at the ends for what lies round the colours.
constexpr qreal EndMargin = 6;

constexpr qreal RestingOpacity = 0.9;
constexpr qreal DimmedOpacity = 0.35;

QColor withAlpha(QColor color, float alpha)
{
    color.setAlphaF(alpha);
    return color;
}

// A line of pixels. Each is the mean of a few places, so that one icon goes over into the next
// without an edge.
QImage painted(const HueStrip &strip, int width)
{
    constexpr int Samples = 8;
    // In pixels.
    constexpr double Blur = 6;
    QImage line(width, 1, QImage::Format_RGB32);
    auto *const pixels = reinterpret_cast<QRgb *>(line.scanLine(0));
    for (int x = 0; x < width; ++x) {
        double red = 0;
        double green = 0;
        double blue = 0;
        for (int i = 0; i < Samples; ++i) {
            const double at = x + 0.5 + Blur * ((i + 0.5) / Samples - 0.5);
            const SortedColor &color = strip.icons()[strip.indexAt(at / width)].color;
            red += color.red;
            green += color.green;
            blue += color.blue;
        }
        const auto sample = [](double sum) { return int(std::lround(sum / Samples * 255)); };
        pixels[x] = qRgb(sample(red), sample(green), sample(blue));
    }
    return line;
}

} // namespace

HueBar::HueBar(OTAppManager &appManager, OTIconView &iconView, QWidget *parent)
    : QWidget(parent)
    , _iconView(iconView)
    , _repaint(*this)
{
    // The panel has the keyboard.
    setFocusPolicy(Qt::NoFocus);
    setMouseTracking(true);
    setAccessibleName(tr("Colours"));
    resize(0, 0);
    connect(&iconView, &OTIconView::groupShownChanged, this, [this](int group) {
        if (std::exchange(_group, group) != group) {
            leave();
        }
        contentDidChange();
    });
    connect(&appManager, &OTAppManager::didChange, this, &HueBar::contentDidChange);
    connect(&NotificationCenter::defaultCenter(), &NotificationCenter::N_AppIconChanged, this,
        &HueBar::contentDidChange);
    connect(&UserDefaults::standard(), &UserDefaults::changed, this, &HueBar::preferenceDidChange);
    HueBarAccessible::install();
    showWhereFitting();
}

void HueBar::registerDefaults()
{
    UserDefaults::standard().registerDefaults({ { showHueBarKey, true } });
}

void HueBar::preferenceDidChange(const QString &key)
{
    if (key == showHueBarKey || key == GridKeys::groupContentsSortOrder) {
        contentDidChange();
        showWhereFitting();
    }
}

void HueBar::contentDidChange()
{
    _isStale = true;
    if (isVisible()) {
        _repaint.add(rect());
    }
}

void HueBar::layOut(const QRect &room)
{
    _room = room;
    showWhereFitting();
}

void HueBar::showWhereFitting()
{
    const int width = std::min(_room.width(), LargestWidth);
    if (width >= LeastWidth) {
        setGeometry(_room.right() + 1 - width, _room.y(), width, _room.height());
    }
    setVisible(width >= LeastWidth && GridInput::isInColorOrder()
        && UserDefaults::standard().boolForKey(showHueBarKey));
}

const HueStrip &HueBar::strip()
{
    if (std::exchange(_isStale, false)) {
        const bool hasPlace = _window && _index < _strip.count();
        const double value = hasPlace ? _strip.icons()[_index].colorSortValue : 0;
        QList<HueStrip::Icon> icons;
        const AppList apps = _iconView.appsShown();
        icons.reserve(apps.size());
        for (qsizetype i = 0; i < apps.size(); ++i) {
            const SortedColors &colors = apps[i]->sortedColors();
            if (!colors.isEmpty()) {
                icons.append({ apps[i]->colorSortValue(), colors.constFirst(), i });
            }
        }
        _strip = HueStrip(icons);
        _index = std::clamp<qsizetype>(_index, 0, std::max<qsizetype>(0, _strip.count() - 1));
        if (!_strip.isOfUse()) {
            leave();
        } else if (hasPlace) {
            _index = _strip.indexNearest(value);
        }
    }
    return _strip;
}

void HueBar::moveTo(qsizetype index)
{
    if (!strip().isOfUse()) {
        return;
    }
    const qsizetype wanted = std::clamp<qsizetype>(index, 0, strip().count() - 1);
    const HueWindow window = strip().windowAt(wanted);
    const bool isChanged = window != _window;
    _index = wanted;
    _window = window;
    _iconView.setHueWindow(window);
    if (isChanged) {
        update();
        HueBarAccessible::valueChanged(this);
    }
}

void HueBar::leave()
{
    _hasKeys = false;
    if (std::exchange(_window, {})) {
        _iconView.setHueWindow({});
        update();
    }
}

QString HueBar::colorName()
{
    if (!_window || !strip().isOfUse()) {
        return {};
    }
    const HueStrip::Icon &icon = strip().icons()[_index];
    return ColorNames::description(icon.color, ColorNames::kindOf(icon.colorSortValue));
}

bool HueBar::handleKeyDown(const QKeyEvent &event)
{
    if (!isVisible() || ModifierKeys::isModifier(event.key()) || !strip().isOfUse()) {
        return false;
    }
    if (event.key() == Qt::Key_F6 && event.isAutoRepeat()) {
        return true;
    }
    if (_hasKeys && handleKeyWithKeys(event)) {
        return true;
    }
    const bool isOurs =
        event.key() == Qt::Key_F6 && event.modifiers() == Qt::NoModifier && !_hasKeys;
    leave();
    if (isOurs) {
        takeKeys();
    }
    return isOurs;
}

// Begins where the user is: at the colour of the selected icon.
void HueBar::takeKeys()
{
    const AppRef selected = _iconView.selectedApp();
    const bool hasColor = selected && selected->colorSortValue() < ColorKey::Unknown;
    _hasKeys = true;
    moveTo(hasColor ? strip().indexNearest(selected->colorSortValue()) : 0);
    HueBarAccessible::focusTaken(this);
}

bool HueBar::handleKeyWithKeys(const QKeyEvent &event)
{
    if ((event.modifiers() & ~Qt::KeyboardModifiers(Qt::KeypadModifier)) != 0) {
        return false;
    }
    switch (event.key()) {
    case Qt::Key_Left:
        moveTo(strip().indexAfter(_index, -1));
        return true;
    case Qt::Key_Right:
        moveTo(strip().indexAfter(_index, 1));
        return true;
    case Qt::Key_Home:
        moveTo(0);
        return true;
    case Qt::Key_End:
        moveTo(strip().count() - 1);
        return true;
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_Return:
    case Qt::Key_Enter:
        goToIcon();
        return true;
    case Qt::Key_Escape:
    case Qt::Key_F6:
        leave();
        return true;
    default:
        return false;
    }
}

// To an icon of the colour that was chosen, from where the arrow keys go on.
void HueBar::goToIcon()
{
    const AppList apps = _iconView.appsShown();
    const qsizetype source = strip().icons()[_index].source;
    leave();
    if (source < apps.size()) {
        // Return would start what the filter leaves, and not this.
        if (_iconView.isAppKeyFilteredOut(apps[source])) {
            _iconView.clearFilter();
        }
        _iconView.selectCoordsByKeys(_iconView.coordsOfApp(apps[source]));
    }
}

void HueBar::enterEvent(QEnterEvent *event)
{
    _enteredAt = event->globalPosition().toPoint();
}

void HueBar::leaveEvent(QEvent *)
{
    if (!_hasKeys) {
        leave();
    }
}

void HueBar::hideEvent(QHideEvent *)
{
    leave();
}

// Other buttons are for the panel.
void HueBar::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton || !strip().isOfUse()) {
        event->ignore();
        return;
    }
    pointTo(event->position());
}

void HueBar::mouseMoveEvent(QMouseEvent *event)
{
    if (event->globalPosition().toPoint() != _enteredAt || _window) {
        pointTo(event->position());
    }
}

// A finger that is lifted leaves no pointer behind.
void HueBar::mouseReleaseEvent(QMouseEvent *event)
{
    const bool isFinger = event->source() != Qt::MouseEventNotSynthesized;
    if (isFinger || !rect().contains(event->position().toPoint())) {
        leave();
    }
}

void HueBar::pointTo(const QPointF &point)
{
    const QRectF colors = track();
    _hasKeys = false;
    moveTo(strip().indexAt((point.x() - colors.x()) / colors.width()));
}

// Of the colours.
QRectF HueBar::track() const
{
    const qreal tall = _window ? ActiveHeight : RestingHeight;
    return QRectF(EndMargin, (height() - tall) / 2, width() - 2 * EndMargin, tall);
}

// Of the window.
QRectF HueBar::thumb(const QRectF &track)
{
    const HueStrip::Span span = strip().spanOf(*_window);
    const qreal middle = track.x() + track.width() * (span.from + span.to) / 2;
    const qreal wide = std::max(LeastThumbWidth, track.width() * (span.to - span.from));
    const qreal left = std::clamp(middle - wide / 2, track.x(), track.right() - wide);
    return QRectF(left, track.y(), wide, track.height())
        .adjusted(-ThumbMargin, -ThumbMargin, ThumbMargin, ThumbMargin);
}

void HueBar::paintEvent(QPaintEvent *)
{
    if (!strip().isOfUse()) {
        return;
    }
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF colors = track();
    const qreal ratio = devicePixelRatioF();
    const QImage line = painted(_strip, int(std::ceil(colors.width() * ratio)));
    QBrush brush(line);
    brush.setTransform(QTransform::fromTranslate(colors.x(), colors.y())
                           .scale(colors.width() / line.width(), colors.height()));
    const QPainterPath outline = capsulePath(colors);
    painter.setOpacity(_window ? DimmedOpacity : RestingOpacity);
    painter.fillPath(outline, brush);
    painter.setOpacity(1);
    const QColor text = _iconView.colors().textColor;
    painter.strokePath(outline, QPen(withAlpha(text, 0.25F), 1));
    if (!_window) {
        return;
    }
    const QPainterPath mark = capsulePath(thumb(colors));
    painter.fillPath(mark.intersected(outline), brush);
    // White between black is told from any colour.
    painter.strokePath(mark, QPen(withAlpha(Qt::black, 0.6F), 3.5));
    painter.strokePath(mark, QPen(Qt::white, 1.5));
    if (_hasKeys) {
        painter.strokePath(capsulePath(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5)),
            QPen(withAlpha(text, 0.6F), 1));
    }
}
