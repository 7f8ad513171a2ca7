#include "platform/OwnWindows.h"

#include <QGuiApplication>
#include <QWindow>

OwnWindows::OwnWindows(QObject *parent)
    : QObject(parent)
{
    if (qGuiApp) {
        connect(
            qGuiApp, &QGuiApplication::focusWindowChanged, this, &OwnWindows::activeWindowChanged);
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

QWindow *OwnWindows::activeWindow() const
{
    return qGuiApp ? QGuiApplication::focusWindow() : nullptr;
}

void OwnWindows::flush() { }
