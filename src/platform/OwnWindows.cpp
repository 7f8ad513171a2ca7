#include "platform/OwnWindows.h"

#include <QApplication>
#include <QWidget>
#include <QWindow>

namespace {

// Null in a program without windows.
QGuiApplication *application()
{
    return qobject_cast<QGuiApplication *>(QCoreApplication::instance());
}

} // namespace

OwnWindows::OwnWindows(QObject *parent)
    : QObject(parent)
{
    if (const auto *const shown = application()) {
        connect(
            shown, &QGuiApplication::focusWindowChanged, this, &OwnWindows::activeWindowChanged);
    }
}

void OwnWindows::setStanding(QWindow &, TaskBar, Level) { }

void OwnWindows::setLevel(QWindow &window, Level level)
{
    if (level == Level::Raised) {
        window.raise();
    }
}

void OwnWindows::activate(QWindow &window, const ActivationStamp &)
{
    window.raise();
    window.requestActivate();
}

void OwnWindows::restoreActivity(QWidget &window)
{
    if (QGuiApplication::focusWindow() == window.windowHandle() && !window.isActiveWindow()) {
        // Qt 6.5 deprecates it for activateWindow(), which asks the display for the focus that it
        // has given already, and changes nothing.
        QT_WARNING_PUSH
        QT_WARNING_DISABLE_DEPRECATED
        QApplication::setActiveWindow(&window);
        QT_WARNING_POP
    }
}

OwnWindows::Former OwnWindows::giveFrontBack()
{
    return Former::Unknown;
}

QWindow *OwnWindows::activeWindow() const
{
    return application() ? QGuiApplication::focusWindow() : nullptr;
}

bool OwnWindows::hasKeyboard(const QWindow &window) const
{
    return application() && QGuiApplication::focusWindow() == &window;
}

bool OwnWindows::isPointerPressed() const
{
    return QGuiApplication::mouseButtons() != Qt::NoButton;
}

bool OwnWindows::setNextContent(QWindow &, const QImage &, const QRect &)
{
    return false;
}

void OwnWindows::clearNextContent(QWindow &) { }

void OwnWindows::flush() { }
