// The display that a launcher is timed on, seen from outside: keys go in, windows come up.
//
// Knows no Qt, like Camera. Ends the program, with a line that says why, when there is no X server
// or it cannot press keys. The pointer goes to a corner.

#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>
#include <xcb/xcb.h>

using Clock = std::chrono::steady_clock;

class Desk final
{
public:
    Desk();
    ~Desk();
    Desk(const Desk &) = delete;
    Desk &operator=(const Desk &) = delete;

    // Of keys joined by "+": a Latin letter or digit, or ctrl, Tab. Empty when one is unknown.
    std::vector<xcb_keycode_t> keys(const std::string &names) const;
    // Holds them down in this order and lets them go in the other.
    void press(const std::vector<xcb_keycode_t> &keys);

    // When the X server said that a window came up, at the top level and large enough for icons.
    // Windows that are up when the desk is made do not count. Nothing after the deadline.
    std::optional<Clock::time_point> awaitWindow(Clock::time_point deadline);

private:
    xcb_keycode_t keyOf(const std::string &name) const;
    bool isPanel(xcb_window_t window) const;

    xcb_connection_t *_connection;
    xcb_window_t _root = XCB_WINDOW_NONE;
};
