#include "shell/selector/OTStatsControl.h"

#include "catalogue/OTAppManager.h"
#include "grid/OTIconView.h"
#include "grid/drawing/GridPainter.h"
#include "shell/selector/StatsAccessible.h"
#include "support/Geometry.h"
#include "support/NotificationCenter.h"
#include "support/Shapes.h"
#include "support/UserDefaults.h"

#include <QFontMetricsF>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QTimerEvent>

#include <algorithm>
#include <cmath>

namespace {

// Of the text, in points.
constexpr int TextSize = 10;
const QString windowAlphaKey = QStringLiteral("windowAlpha");
const QString windowColorKey = QStringLiteral("windowColor");

} // namespace

OTStatsControl::OTStatsControl(OTAppManager &appManager, OTIconView &iconView, QWidget *parent)
    : QWidget(parent)
    , _appManager(appManager)
    , _iconView(iconView)
{
    // The panel has the keyboard.
    setFocusPolicy(Qt::NoFocus);
    setMouseTracking(true);
    QFont small;
    small.setPixelSize(TextSize);
    setFont(small);
    resize(0, 0);

    connect(&appManager, &OTAppManager::didChange, this, &OTStatsControl::listDidChange);
    connect(&iconView, &OTIconView::groupShownChanged, this, &OTStatsControl::selectButtonForGroup);
    connect(&UserDefaults::standard(), &UserDefaults::changed, this, [this](const QString &key) {
        if (key == windowAlphaKey || key == windowColorKey) {
            updateColors();
        }
    });
    const NotificationCenter &center = NotificationCenter::defaultCenter();
    connect(&center, &NotificationCenter::N_SelectNextIconGroup, this, [this](QObject *view) {
        if (view == &_iconView) {
            selectNextButton();
        }
    });
    connect(&center, &NotificationCenter::N_SelectPrevIconGroup, this, [this](QObject *view) {
        if (view == &_iconView) {
            selectPreviousButton();
        }
    });
    connect(&_springLoading, &SpringLoading::opened, this, &OTStatsControl::selectButtonAtIndex);

    StatsAccessible::install();
    updateColors();
    updateCounts();
    selectButtonForGroup(iconView.groupShown());
}

OTStatsControl::~OTStatsControl() = default;

void OTStatsControl::registerDefaults()
{
    SpringLoading::registerDefaults();
}

void OTStatsControl::listDidChange(const QString &key)
{
    for (const char *list :
        { "allApps", "includedApps", "excludedApps", "userApps", "runningApps" }) {
        if (key.startsWith(QLatin1String(list)) && !_countTimer.isActive()) {
            _countTimer.start(0, this);
        }
    }
}

void OTStatsControl::timerEvent(QTimerEvent *event)
{
    if (event->timerId() == _countTimer.timerId()) {
        takeCounts();
    }
}

void OTStatsControl::takeCounts()
{
    if (!_countTimer.isActive()) {
        return;
    }
    _countTimer.stop();
    const bool hadRoom = _wording != StatsButtons::Letter;
    updateCounts();
    if (hadRoom && _wording == StatsButtons::Letter) {
        Q_EMIT roomWanted();
    }
}

void OTStatsControl::updateCounts()
{
    for (int i = 0; i < StatsButtons::Count; ++i) {
        setCount(StatsButtons::countFromCatalogue(_appManager, i), i);
    }
}

void OTStatsControl::setCount(qint64 count, int forButtonAtIndex)
{
    if (_buttons.setCount(count, forButtonAtIndex)) {
        fitLabels();
        update();
        StatsAccessible::nameChanged(this, forButtonAtIndex);
    }
}

void OTStatsControl::layOut(const QRect &place)
{
    _place = place;
    fitLabels();
}

// The line is as high as a capsule, so that the text stands in the middle of it, and whole points
// keep the capsules on pixels.
QSizeF OTStatsControl::textSize(const QString &label, int height) const
{
    const QFontMetricsF metrics(font());
    return { std::ceil(metrics.horizontalAdvance(label)),
        std::max(metrics.height(), qreal(height - 2)) };
}

int OTStatsControl::leastWidth(int height) const
{
    const QFontMetricsF metrics(font());
    const QString digits = QStringLiteral("0123456789");
    const QChar widest =
        *std::max_element(digits.cbegin(), digits.cend(), [&metrics](QChar one, QChar other) {
            return metrics.horizontalAdvance(one) < metrics.horizontalAdvance(other);
        });
    StatsButtons buttons;
    QList<QSizeF> sizes;
    for (int i = 0; i < StatsButtons::Count; ++i) {
        buttons.setCount(StatsButtons::countFromCatalogue(_appManager, i), i);
        QString label = buttons.label(i, StatsButtons::Short);
        std::replace_if(
            label.begin(), label.end(), [](QChar c) { return c.isDigit(); }, widest);
        sizes.append(textSize(label, height));
    }
    return StatsLayout(sizes, height).totalWidth();
}

void OTStatsControl::fitLabels()
{
    const int height = std::max(_place.height(), 0);
    QList<QList<QSizeF>> wordings(StatsButtons::WordingCount);
    for (int wording = 0; wording < StatsButtons::WordingCount; ++wording) {
        for (int i = 0; i < StatsButtons::Count; ++i) {
            wordings[wording].append(
                textSize(_buttons.label(i, StatsButtons::Wording(wording)), height));
        }
    }
    const qsizetype fitting = StatsLayout::fittingWording(wordings, height, _place.width());
    const StatsLayout layout(wordings[fitting], height);
    if (layout != _layout) {
        _layout = layout;
        update();
    }
    _wording = StatsButtons::Wording(fitting);
    setGeometry(
        _place.x(), _place.y(), std::clamp(_place.width(), 0, _layout.totalWidth()), height);
    pointerMoved(_pointer);
}

QRectF OTStatsControl::buttonRect(int index) const
{
    return Geometry::flipped(
        _layout.buttons()[std::clamp(index, 0, StatsButtons::Count - 1)].capsule, height());
}

int OTStatsControl::indexOfButtonAt(const QPointF &point) const
{
    return QRectF(rect()).contains(point) ? _layout.buttonAt(Geometry::flipped(point, height()))
                                          : -1;
}

int OTStatsControl::groupForSelectedButton() const
{
    const int index = indexOfSelectedButton();
    return index < 0 ? -1 : _buttons.group(index);
}

void OTStatsControl::markSelection(bool isAnother)
{
    setMouseState(MouseState::None, -1);
    if (isAnother) {
        update();
        StatsAccessible::selectionChanged(this);
    }
}

void OTStatsControl::selectButtonForGroup(int group)
{
    markSelection(_buttons.selectGroup(group));
}

void OTStatsControl::selectButtonAtIndex(int index)
{
    markSelection(_buttons.selectIndex(index));
    _iconView.setGroupToShow(_buttons.group(index));
    // Modifiers may have made another group of it, one even that was shown already.
    selectButtonForGroup(_iconView.groupShown());
}

void OTStatsControl::selectNextButton()
{
    selectButtonAtIndex(_buttons.enabledIndexFromSelected(1));
}

void OTStatsControl::selectPreviousButton()
{
    selectButtonAtIndex(_buttons.enabledIndexFromSelected(-1));
}

bool OTStatsControl::handleKeyDown(const QKeyEvent &event)
{
    constexpr auto commands = Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;
    const bool isBacktab = event.key() == Qt::Key_Backtab;
    if ((!isBacktab && event.key() != Qt::Key_Tab) || (event.modifiers() & commands) != 0) {
        return false;
    }
    // Held down it does nothing more, for the grid neither.
    if (event.isAutoRepeat()) {
        return true;
    }
    if (isBacktab || event.modifiers().testFlag(Qt::ShiftModifier)) {
        selectPreviousButton();
    } else {
        selectNextButton();
    }
    return true;
}

void OTStatsControl::updateColors()
{
    // The grid hears of preferences first, and complains of those that cannot be read.
    const GridColors &window = _iconView.colors();
    const StatsColors colors(window.winAlpha, window.winColor);
    if (colors != _colors) {
        _colors = colors;
        update();
    }
}

const StatsColors::Capsule &OTStatsControl::colorsOf(int index) const
{
    switch (mouseState(index)) {
    case MouseState::Hovered:
        return _colors.hovered;
    case MouseState::PressedInside:
        return _colors.pressed;
    case MouseState::None:
        break;
    }
    return _buttons.isSelected(index) ? _colors.selected : _colors.plain;
}

void OTStatsControl::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QPainterPath outline = capsulePath(rect());
    painter.fillPath(outline, _colors.row);
    // Clipped only where it has to be: what is clipped is smoothed along the edge once more.
    if (_layout.totalWidth() > width()) {
        painter.setClipPath(outline);
    }
    for (int i = 0; i < StatsButtons::Count; ++i) {
        const QRectF text = _layout.buttons()[i].text;
        if (text.width() >= 1) {
            const StatsColors::Capsule &colors = colorsOf(i);
            painter.fillPath(capsulePath(buttonRect(i)), colors.fill);
            painter.setPen(colors.text);
            painter.drawText(Geometry::flipped(text, height()),
                Qt::AlignCenter | Qt::TextSingleLine | Qt::TextDontClip, displayedLabel(i));
        }
    }
}

void OTStatsControl::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange || event->type() == QEvent::FontChange) {
        _buttons.writeLabels();
        fitLabels();
        update();
    }
    QWidget::changeEvent(event);
}

void OTStatsControl::hideEvent(QHideEvent *)
{
    _isPressed = false;
    pointerMoved({});
    _springLoading.dragEnded();
}

void OTStatsControl::setMouseState(MouseState state, int onlyButton)
{
    if (_buttons.setMouseState(state, onlyButton)) {
        update();
    }
}

// A button that forgot about the pointer hears of it again only once it comes back.
void OTStatsControl::pointerMoved(const std::optional<QPointF> &point)
{
    _pointer = point;
    const int index = point ? indexOfButtonAt(*point) : -1;
    if (_isPressed) {
        setMouseState(MouseState::PressedInside, index);
    } else if (index != _pointedIndex) {
        setMouseState(MouseState::Hovered, index);
    }
    _pointedIndex = index;
}

// What is not for a capsule is for the panel: it can be moved here too, and opens its menu.
void OTStatsControl::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton || indexOfButtonAt(event->position()) < 0) {
        event->ignore();
        return;
    }
    _isPressed = true;
    pointerMoved(event->position());
}

void OTStatsControl::mouseMoveEvent(QMouseEvent *event)
{
    if (event->buttons() != Qt::NoButton && !_isPressed) {
        event->ignore();
        return;
    }
    // A release may have gone elsewhere.
    _isPressed = _isPressed && event->buttons().testFlag(Qt::LeftButton);
    pointerMoved(event->position());
}

void OTStatsControl::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton || !_isPressed) {
        event->ignore();
        return;
    }
    _isPressed = false;
    pointerMoved(event->position());
    setMouseState(MouseState::None, -1);
    if (_pointedIndex >= 0) {
        selectButtonAtIndex(_pointedIndex);
    }
}

void OTStatsControl::enterEvent(QEnterEvent *event)
{
    pointerMoved(event->position());
}

void OTStatsControl::leaveEvent(QEvent *)
{
    pointerMoved({});
}

void OTStatsControl::testDrag(const QPointF &point)
{
    pointerMoved(point);
    _springLoading.dragMovedTo(_pointedIndex);
}

void OTStatsControl::dragEnded()
{
    pointerMoved({});
    _springLoading.dragEnded();
}
