// The tray of an X server: whether there is one, and whether a window of ours is docked in it.
// https://specifications.freedesktop.org/systemtray-spec/latest/
//
// Trays announce themselves, so nothing is asked twice. The connection is its own: a server knows
// one event mask for each connection and window, and the tray's window may be one that the
// application list listens to as well.

#pragma once

#include "platform/freedesktop/x11/XConnection.h"

#include <QObject>

#include <array>

class TrayWindow final : public QObject
{
    Q_OBJECT

public:
    // Asks the server once, here.
    explicit TrayWindow(QObject *parent = nullptr);

    // None without a tray, or without a display.
    xcb_window_t tray() const { return _tray; }

    // The window to know of from now on; none for no window.
    void follow(xcb_window_t window);
    bool isDocked() const { return _isDocked; }

Q_SIGNALS:
    // Another tray, or none any more.
    void trayChanged();
    void isDockedChanged();

private:
    enum Atom { Selection, Manager, AtomCount };

    void handleEvent(const xcb_generic_event_t *event);
    void takeTray();
    void setTray(xcb_window_t tray);
    void takeDocking();
    bool isWindowDocked() const;
    void listenTo(xcb_window_t window);

    XConnection _connection;
    std::array<xcb_atom_t, AtomCount> _atoms {};
    xcb_window_t _tray = XCB_WINDOW_NONE;
    xcb_window_t _window = XCB_WINDOW_NONE;
    bool _isDocked = false;
};
