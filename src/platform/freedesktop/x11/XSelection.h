// Who owns a selection of the display: managers of many kinds, of compositing for one, show in this
// way that they are there.

#pragma once

#include "platform/freedesktop/x11/XConnection.h"

class XSelection final : public QObject
{
    Q_OBJECT

public:
    // The connection is open, and outlives this. Asks the server once, here, and is told of changes
    // from then on.
    XSelection(XConnection &connection, XConnection::Atom name);
    ~XSelection() override;

    // None when no window does.
    xcb_window_t owner() const { return _owner; }

Q_SIGNALS:
    // Also when one owner has followed another.
    void ownerChanged();

private:
    void handleEvent(const xcb_generic_event_t *event);
    void setOwner(xcb_window_t owner);

    XConnection &_connection;
    const xcb_atom_t _name;
    // 0 where the server does not tell.
    int _eventType = 0;
    xcb_window_t _owner = XCB_WINDOW_NONE;
};
