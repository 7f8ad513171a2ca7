// Knows whether an X server has a compositing manager. Wayland always blends.

#pragma once

#include "platform/Compositing.h"
#include "platform/freedesktop/x11/XSelection.h"

#include <memory>

class DisplayCompositing final : public Compositing
{
    Q_OBJECT

public:
    // The connection outlives this; null where Qt draws on anything but an X server.
    explicit DisplayCompositing(XConnection *connection);

    // Right from the start; later as the server last told, which it does through the event loop.
    bool isActive() const override { return _isActive; }

private:
    void refresh();

    std::unique_ptr<XSelection> _manager;
    bool _isActive = false;
};
