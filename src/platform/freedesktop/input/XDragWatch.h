// Watches the source of a drag on an X server, which owns a selection for as long as it drags.

#pragma once

#include "platform/DragWatch.h"
#include "platform/freedesktop/x11/XSelection.h"

#include <memory>

class XDragWatch final : public DragWatch
{
    Q_OBJECT

public:
    // The connection outlives this.
    explicit XDragWatch(XConnection &connection);

    void watch() override;
    void stop() override;

private:
    void finish();

    XConnection &_connection;
    // Null while nothing is watched.
    std::unique_ptr<XSelection> _source;
};
