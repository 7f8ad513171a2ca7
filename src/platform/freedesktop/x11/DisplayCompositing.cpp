#include "platform/freedesktop/x11/DisplayCompositing.h"

#include <QGuiApplication>

DisplayCompositing::DisplayCompositing(XConnection *connection)
{
    if (connection == nullptr || !connection->isOpen()) {
        _isActive = QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
        return;
    }
    // A manager owns a selection that is named after its screen.
    // https://specifications.freedesktop.org/wm-spec/latest/ar01s08.html
    _manager = std::make_unique<XSelection>(*connection, XConnection::CompositingManager);
    connect(_manager.get(), &XSelection::ownerChanged, this, &DisplayCompositing::refresh);
    _isActive = _manager->owner() != XCB_WINDOW_NONE;
}

// One manager may take over from another.
void DisplayCompositing::refresh()
{
    const bool isActive = _manager->owner() != XCB_WINDOW_NONE;
    if (isActive != _isActive) {
        _isActive = isActive;
        Q_EMIT changed();
    }
}
