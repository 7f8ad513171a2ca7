#include "shell/triggers/OTStatusItemView.h"

#include "icons/ProgramImages.h"
#include "platform/StatusItem.h"
#include "support/NotificationCenter.h"

#include <QCursor>
#include <QGuiApplication>
#include <QMenu>
#include <QPainter>
#include <QPixmap>
#include <QPoint>
#include <QRect>
#include <QScreen>

#include <algorithm>
#include <chrono>
#include <utility>

using namespace std::chrono_literals;

namespace {

constexpr auto holdTime = 500ms;
constexpr auto shortestProgressPause = 100ms;
// In points.
constexpr int pictureSize = 16;
constexpr int barLength = 12;

// -1 when there is nothing to measure.
int barWidth(int step, int count)
{
    return count < 1 ? -1 : int(qint64(barLength) * std::clamp(step, 0, count) / count);
}

QImage barPicture(int width)
{
    QImage picture(pictureSize, pictureSize, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::white);
    QPainter painter(&picture);
    painter.fillRect(QRect(1, 1, 14, 14), Qt::black);
    painter.fillRect(QRect(2, 2, barLength, barLength), Qt::white);
    painter.fillRect(QRect(2, 2, width, barLength), Qt::black);
    return picture;
}

// Below an item of the upper half of the screen, above one of the lower half; where there is too
// little room for that, to its right or left.
QPoint placeBeside(const QRect &item, const QSize &menu, const QRect &screen)
{
    const auto kept = [](int value, int low, int high) {
        return std::max(low, std::min(value, high));
    };
    const QPoint last = screen.bottomRight() + QPoint(1, 1) - QPoint(menu.width(), menu.height());
    const QPoint middle = screen.center();
    const int y = item.center().y() < middle.y() ? item.bottom() + 1 : item.top() - menu.height();
    if (y >= screen.top() && y <= last.y()) {
        return { kept(item.left(), screen.left(), last.x()), y };
    }
    const int x = item.center().x() < middle.x() ? item.right() + 1 : item.left() - menu.width();
    return { x, kept(item.top(), screen.top(), last.y()) };
}

} // namespace

QImage OTStatusItemView::progressPicture(int step, int count)
{
    return count < 1 ? QImage() : barPicture(barWidth(step, count));
}

OTStatusItemView::OTStatusItemView(StatusItem &statusItem, QMenu &menu, Action action, Click click)
    : _statusItem(statusItem)
    , _menu(menu)
    , _action(std::move(action))
    , _image(ProgramImages::icon(QStringLiteral("ortu_status_item_black")))
    , _altImage(ProgramImages::icon(QStringLiteral("ortu_status_item_white")))
{
    if (_image.isNull()) {
        return;
    }
    connect(&_statusItem, &StatusItem::menuWanted, this, &OTStatusItemView::popUpMenu);
    if (click == Click::PerformsAction) {
        connectPresses();
    } else {
        connect(&_statusItem, &StatusItem::pressed, this, &OTStatusItemView::openMenu);
        connect(&_statusItem, &StatusItem::activated, this, &OTStatusItemView::openMenu);
    }
    _statusItem.show(_image, QStringLiteral("Ortu"), _menu);
}

OTStatusItemView::~OTStatusItemView()
{
    if (!_image.isNull()) {
        _statusItem.hide();
    }
}

void OTStatusItemView::connectPresses()
{
    _menuTimer.setSingleShot(true);
    connect(&_menuTimer, &QTimer::timeout, this, &OTStatusItemView::openMenu);
    connect(&_statusItem, &StatusItem::pressed, this, &OTStatusItemView::mouseDown);
    connect(&_statusItem, &StatusItem::dragged, this, &OTStatusItemView::mouseDragged);
    connect(&_statusItem, &StatusItem::released, this, &OTStatusItemView::mouseUp);
    connect(&_statusItem, &StatusItem::dragEntered, this, &OTStatusItemView::draggingEntered);
    connect(&_statusItem, &StatusItem::activated, this,
        [this](const ActivationStamp &stamp) { _action(stamp); });
    _progressPause.setSingleShot(true);
    connect(&_progressPause, &QTimer::timeout, this, [this] {
        if (_shownBarWidth != _barWidth) {
            takeProgress();
        }
    });
    connect(&NotificationCenter::defaultCenter(), &NotificationCenter::N_ShowProgressStep, this,
        &OTStatusItemView::showProgressStep);
}

void OTStatusItemView::mouseDown(const ActivationStamp &, Qt::KeyboardModifiers modifiers)
{
    if (modifiers.testFlag(Qt::ControlModifier)) {
        popUpMenu(QCursor::pos());
        return;
    }
    _isTracking = true;
    setHighlighted(true);
    startMenuTimer();
}

void OTStatusItemView::mouseDragged(bool isInside)
{
    if (isInside == _shouldHiliteMenu) {
        return;
    }
    if (!isInside) {
        _menuTimer.stop();
        setHighlighted(false);
    } else if (_isTracking) {
        setHighlighted(true);
        startMenuTimer();
    }
}

void OTStatusItemView::mouseUp(bool isInside, const ActivationStamp &stamp)
{
    _isTracking = false;
    setHighlighted(false);
    const bool wasPending = _menuTimer.isActive();
    _menuTimer.stop();
    if (wasPending && isInside) {
        _action(stamp);
    }
}

void OTStatusItemView::draggingEntered(const ActivationStamp &stamp)
{
    setHighlighted(true);
    _action(stamp);
}

void OTStatusItemView::startMenuTimer()
{
    _menuTimer.start(holdTime);
}

// Only a click asks, so the pointer is at the item.
void OTStatusItemView::openMenu()
{
    popUpMenu(QCursor::pos());
}

void OTStatusItemView::popUpMenu(const QPoint &position)
{
    _menuTimer.stop();
    _isTracking = false;
    setHighlighted(false);
    const QRect item = _statusItem.place();
    const QScreen *const screen = QGuiApplication::screenAt(item.center());
    _menu.popup(item.isEmpty() || !screen
            ? position
            : placeBeside(item, _menu.sizeHint(), screen->geometry()));
}

void OTStatusItemView::setHighlighted(bool isHighlighted)
{
    _shouldHiliteMenu = isHighlighted;
    redisplay();
}

// There are a few widths only, however many steps.
void OTStatusItemView::showProgressStep(int step, int count)
{
    _barWidth = barWidth(step, count);
    const bool isFirstOrLast = _shownBarWidth < 0 || _barWidth < 0 || _barWidth == barLength;
    if (_barWidth != _shownBarWidth && (isFirstOrLast || !_progressPause.isActive())) {
        takeProgress();
    }
}

void OTStatusItemView::takeProgress()
{
    _shownBarWidth = _barWidth;
    if (_barWidth < 0) {
        _progressImage = {};
        _progressPause.stop();
    } else {
        _progressImage = QIcon(QPixmap::fromImage(barPicture(_barWidth)));
        _progressPause.start(shortestProgressPause);
    }
    redisplay();
}

void OTStatusItemView::redisplay()
{
    const QIcon &normal = _shouldHiliteMenu ? _altImage : _image;
    const QIcon &icon = _progressImage.isNull() ? normal : _progressImage;
    if (icon.cacheKey() != _shownIcon) {
        _shownIcon = icon.cacheKey();
        _statusItem.setIcon(icon);
    }
}
