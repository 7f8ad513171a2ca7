// The cursor hot spot: a place at a corner or an edge of a screen, never the upper edge, where the
// pointer has only to rest.
//
// Lasts as long as the place holds: who sees another location chosen, or the screens changed, makes
// another one, after this one has gone, since a desktop has one hot spot.

#pragma once

#include "shell/triggers/OTHotSpotView.h"

#include <QObject>
#include <QRectF>

class HotSpot;
class QScreen;

class OTHotSpotWindow final : public QObject
{
    Q_OBJECT

public:
    using Action = OTHotSpotView::Action;

    // The place for a value of the preference cursorHotSpotLocation, y upwards like the frame; a
    // null rectangle for 0, which is none, and where the screen is too small for it.
    static QRectF hotSpotRect(int location, const QRectF &screenFrame);
    // The frame of the primary screen, y upwards. An empty one without a screen.
    static QRectF screenFrame();

    // `contentRect` is a place of the primary screen. The hot spot must outlive this. Without a
    // place, or where the desktop has no hot spots, nothing ever happens.
    OTHotSpotWindow(HotSpot &hotSpot, const QRectF &contentRect, Action action);
    ~OTHotSpotWindow() override;

    OTHotSpotView &view() { return _view; }

private:
    HotSpot &_hotSpot;
    OTHotSpotView _view;
    const bool _isPlaced;
};
