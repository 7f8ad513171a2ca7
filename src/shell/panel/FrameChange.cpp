#include "shell/panel/FrameChange.h"

#include "platform/OwnWindows.h"

#include <QEvent>
#include <QImage>
#include <QWidget>
#include <QWindow>

#include <utility>

namespace {

// Milliseconds. A window manager that grants a size does so in much less.
constexpr int longestWait = 100;
// For a window manager that has given the window its size to finish with the frame and its shape.
constexpr int finishingTime = 10;

QImage pictureOf(QWidget &content)
{
    const qreal ratio = content.devicePixelRatio();
    QImage picture(content.size() * ratio, QImage::Format_ARGB32_Premultiplied);
    picture.setDevicePixelRatio(ratio);
    picture.fill(Qt::transparent);
    content.render(&picture, {}, {}, QWidget::DrawChildren);
    return picture;
}

} // namespace

FrameChange::FrameChange(QWidget &window, QWidget &content, OwnWindows &ownWindows, Shape shape)
    : _window(window)
    , _content(content)
    , _ownWindows(ownWindows)
    , _shape(std::move(shape))
{
    _waiting.setSingleShot(true);
    connect(&_waiting, &QTimer::timeout, this, &FrameChange::settle);
}

void FrameChange::setFrame(const QRect &frame)
{
    const QSize before = _window.size();
    // What may not be updated is not drawn either.
    _window.setUpdatesEnabled(true);
    _content.resize(frame.size());
    if (!_window.isVisible() || frame.size() == before || !giveAhead(frame)) {
        _window.setGeometry(frame);
        updateShape();
        return;
    }
    _window.setUpdatesEnabled(false);
    _window.setGeometry(frame);
    // Window managers give their frames the shape that the window has when they get to its size.
    if (const QRegion shape = _shape(frame.size()); !shape.isEmpty()) {
        _window.setMask(shape);
        _ownWindows.flush();
    }
}

void FrameChange::showVeiled()
{
    if (_waiting.isActive()) {
        settle();
    }
    _content.resize(_window.size());
    _isVeiled = _areTaken && !_shape(_window.size()).isEmpty();
    if (_isVeiled) {
        _window.setMask(QRect(-1, -1, 1, 1));
    } else {
        cutOut();
    }
    _window.show();
}

void FrameChange::unveil()
{
    if (_isVeiled) {
        giveAhead(_window.geometry());
        _isVeiled = false;
        cutOut();
        _ownWindows.flush();
    }
}

void FrameChange::updateShape()
{
    // What is under way ends with it.
    if (!_waiting.isActive() && !_isVeiled) {
        cutOut();
    }
}

void FrameChange::cutOut()
{
    const QRegion shape = _shape(_window.size());
    if (shape.isEmpty()) {
        _window.clearMask();
    } else {
        _window.setMask(shape);
    }
}

bool FrameChange::giveAhead(const QRect &frame)
{
    QWindow *const window = _window.windowHandle();
    if (window == nullptr || !_areTaken) {
        return false;
    }
    _areTaken = _ownWindows.setNextContent(*window, pictureOf(_content), frame);
    if (_areTaken) {
        window->installEventFilter(this);
        _waiting.start(longestWait);
    }
    return _areTaken;
}

bool FrameChange::eventFilter(QObject *watched, QEvent *event)
{
    const bool mayBeThere = event->type() == QEvent::Resize || event->type() == QEvent::Expose;
    const auto *const window = qobject_cast<QWindow *>(watched);
    if (_waiting.isActive() && mayBeThere && window->isExposed()
        && window->size() == _window.size()) {
        // What is cut out is drawn by a window manager and on the screen step by step.
        if (_shape(_window.size()).isEmpty()) {
            settle();
        } else {
            _waiting.start(finishingTime);
        }
    }
    return QObject::eventFilter(watched, event);
}

void FrameChange::settle()
{
    _waiting.stop();
    cutOut();
    if (QWindow *const window = _window.windowHandle()) {
        _ownWindows.clearNextContent(*window);
    }
    _window.setUpdatesEnabled(true);
    // Qt takes what it could not draw meanwhile for already asked for.
    _window.repaint();
    _ownWindows.flush();
}
