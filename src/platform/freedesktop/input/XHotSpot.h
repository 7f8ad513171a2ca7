// A hot spot on an X server: a window that is not drawn, above all others.
//
// A window that comes to lie above it, and the spot's rising again, are neither an entrance nor an
// exit of the pointer; nor is it an entrance when the spot is placed where the pointer rests. While
// other programs hold the pointer, they alone hear of it: it has then left, until it comes in
// again. There is no spot off X11, nor where the X server itself is a guest on Wayland.

#pragma once

#include "platform/HotSpot.h"
#include "platform/freedesktop/x11/XConnection.h"

#include <QTimer>

#include <array>
#include <chrono>
#include <memory>
#include <optional>

class XHotSpot final : public HotSpot
{
    Q_OBJECT

public:
    explicit XHotSpot(QObject *parent = nullptr);
    ~XHotSpot() override;

    bool place(const QRect &area) override;
    void remove() override;

    // A place in the coordinates of windows, on a screen with these, in pixels of the display.
    // Qt rounds the size of a screen to whole points; a place at the far edges takes in what
    // may have been lost by that.
    static QRect devicePixels(const QRect &area, const QRect &screen, qreal devicePixelRatio);

private:
    // Resting: it is there without having come in.
    enum class Pointer { Outside, Resting, Entered };
    enum Atom {
        Aware,
        Drop,
        Enter,
        Finished,
        Leave,
        Position,
        Status,
        TypeList,
        // What files and addresses are offered as; by the last two, addresses alone.
        UriList,
        MozillaUrl,
        NetscapeUrl,
        AtomCount
    };

    bool connectToServer();
    void makeWindow();
    void handleEvent(const xcb_generic_event_t *event);
    void handleCrossing(const xcb_enter_notify_event_t &event, bool isEntering);
    void handleDrag(const xcb_client_message_event_t &message);
    bool carriesUrls(const xcb_client_message_event_t &enter) const;
    void refuse(xcb_window_t source, Atom message);
    bool concernsCovering(const xcb_generic_event_t *event) const;
    bool overlaps(int x, int y, int width, int height) const;
    void check();
    bool isCovered() const;
    // Nothing when the server does not answer.
    std::optional<bool> isPointerInside() const;
    void enter(quint32 time);
    void leave();

    std::unique_ptr<XConnection> _connection;
    std::array<xcb_atom_t, AtomCount> _atoms {};
    xcb_window_t _window = XCB_WINDOW_NONE;
    QRect _pixels;
    Pointer _pointer = Pointer::Outside;
    // Of the drag above the spot when that is one of files or addresses.
    xcb_window_t _dragSource = XCB_WINDOW_NONE;
    // Something may have covered the spot.
    bool _isCheckDue = false;
    // Runs after a check, and keeps the next one waiting: longer each time another window insists
    // on being above.
    QTimer _pause;
    std::chrono::milliseconds _nextPause;
};
