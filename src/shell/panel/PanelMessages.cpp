#include "shell/panel/PanelMessages.h"

#include "grid/typing/ModifierKeys.h"
#include "shell/panel/OTWindow.h"
#include "shell/selector/OTIconOverlayView.h"
#include "support/NotificationCenter.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWindow>

namespace {

// Modifiers by themselves choose nothing, and a key that is held down was pressed for another
// reason.
bool isKey(const QKeyEvent &event)
{
    return !ModifierKeys::isModifier(event.key()) && !event.isAutoRepeat();
}

} // namespace

PanelMessages::PanelMessages(OTWindow &window)
    : QObject(&window)
    , _window(window)
{
    connect(&NotificationCenter::defaultCenter(), &NotificationCenter::N_UserMessage, this,
        &PanelMessages::take);
    connect(&window, &OTWindow::shown, this, &PanelMessages::show);
    connect(&window, &OTWindow::hidden, this, &PanelMessages::dismiss);
}

void PanelMessages::take(const QString &message)
{
    _waiting = message;
    if (_window.isShown()) {
        show();
    }
}

void PanelMessages::show()
{
    if (_waiting.isEmpty()) {
        return;
    }
    _window.overlay().setMessage(_waiting);
    _waiting.clear();
    // Not the very key or click that the message is the answer to: that one is still on its way.
    QMetaObject::invokeMethod(
        this, [this] { QCoreApplication::instance()->installEventFilter(this); },
        Qt::QueuedConnection);
}

void PanelMessages::dismiss()
{
    QCoreApplication::instance()->removeEventFilter(this);
    _window.overlay().setMessage({});
}

bool PanelMessages::eventFilter(QObject *watched, QEvent *event)
{
    const bool isPress = event->type() == QEvent::MouseButtonPress || event->type() == QEvent::Wheel
        || (event->type() == QEvent::KeyPress && isKey(*static_cast<QKeyEvent *>(event)));
    if (!isPress || !_window.isShown()) {
        return QObject::eventFilter(watched, event);
    }
    const bool isOnBubble = watched == _window.windowHandle()
        && event->type() == QEvent::MouseButtonPress
        && isOnMessage(static_cast<QMouseEvent *>(event)->globalPosition().toPoint());
    dismiss();
    // The icon below it was not seen.
    return isOnBubble || QObject::eventFilter(watched, event);
}

bool PanelMessages::isOnMessage(const QPoint &onScreen) const
{
    const OTIconOverlayView &overlay = _window.overlay();
    return overlay.message().rect().contains(overlay.mapFromGlobal(onScreen));
}
