#include "Desk.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <poll.h>
#include <sstream>
#include <xcb/xtest.h>

namespace {

// What is smaller is a tooltip, a marker of the window manager and the like.
constexpr int LeastWidth = 200;
constexpr int LeastHeight = 60;

struct Free
{
    void operator()(void *reply) const { std::free(reply); }
};
template <typename T> using Reply = std::unique_ptr<T, Free>;

[[noreturn]] void fail(const char *what)
{
    std::fprintf(stderr, "desk: %s\n", what);
    std::exit(2);
}

// Latin characters are their own symbols; zero for an unknown name.
xcb_keysym_t symbolOf(const std::string &name)
{
    if (name.size() == 1) {
        return xcb_keysym_t(static_cast<unsigned char>(name.front()));
    }
    if (name == "ctrl") {
        return 0xffe3;
    }
    return name == "Tab" ? 0xff09 : 0;
}

} // namespace

Desk::Desk()
    : _connection(xcb_connect(nullptr, nullptr))
{
    if (xcb_connection_has_error(_connection) != 0) {
        fail("no X server");
    }
    const xcb_query_extension_reply_t *const test =
        xcb_get_extension_data(_connection, &xcb_test_id);
    if (test == nullptr || test->present == 0) {
        fail("the X server cannot press keys: it has no XTEST extension");
    }
    _root = xcb_setup_roots_iterator(xcb_get_setup(_connection)).data->root;
    const uint32_t events = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    xcb_request_check(_connection,
        xcb_change_window_attributes_checked(_connection, _root, XCB_CW_EVENT_MASK, &events));
    // Above an icon it would bring up a tooltip.
    xcb_warp_pointer(_connection, XCB_WINDOW_NONE, _root, 0, 0, 0, 0, 2, 2);
    xcb_flush(_connection);
}

Desk::~Desk()
{
    xcb_disconnect(_connection);
}

std::vector<xcb_keycode_t> Desk::keys(const std::string &names) const
{
    std::vector<xcb_keycode_t> keys;
    std::istringstream parts(names);
    for (std::string name; std::getline(parts, name, '+');) {
        keys.push_back(keyOf(name));
        if (keys.back() == 0) {
            return {};
        }
    }
    return keys;
}

void Desk::press(const std::vector<xcb_keycode_t> &keys)
{
    const auto send = [this](uint8_t event, xcb_keycode_t key) {
        xcb_test_fake_input(_connection, event, key, XCB_CURRENT_TIME, XCB_WINDOW_NONE, 0, 0, 0);
    };
    std::for_each(keys.begin(), keys.end(), [&](xcb_keycode_t key) { send(XCB_KEY_PRESS, key); });
    std::for_each(
        keys.rbegin(), keys.rend(), [&](xcb_keycode_t key) { send(XCB_KEY_RELEASE, key); });
    xcb_flush(_connection);
}

std::optional<Clock::time_point> Desk::awaitWindow(Clock::time_point deadline)
{
    for (;;) {
        const Reply<xcb_generic_event_t> event(xcb_poll_for_event(_connection));
        if (!event) {
            const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
            if (left.count() <= 0 || xcb_connection_has_error(_connection) != 0) {
                return {};
            }
            pollfd wait { xcb_get_file_descriptor(_connection), POLLIN, 0 };
            poll(&wait, 1, int(left.count()));
            continue;
        }
        const Clock::time_point now = Clock::now();
        if ((event->response_type & 0x7f) != XCB_MAP_NOTIFY) {
            continue;
        }
        const auto *const mapped = reinterpret_cast<const xcb_map_notify_event_t *>(event.get());
        if (mapped->event == _root && isPanel(mapped->window)) {
            return now;
        }
    }
}

xcb_keycode_t Desk::keyOf(const std::string &name) const
{
    const xcb_keysym_t symbol = symbolOf(name);
    const xcb_setup_t *const setup = xcb_get_setup(_connection);
    const auto count = uint8_t(setup->max_keycode - setup->min_keycode + 1);
    const Reply<xcb_get_keyboard_mapping_reply_t> mapping(xcb_get_keyboard_mapping_reply(
        _connection, xcb_get_keyboard_mapping(_connection, setup->min_keycode, count), nullptr));
    if (!mapping || symbol == 0) {
        return 0;
    }
    const xcb_keysym_t *const symbols = xcb_get_keyboard_mapping_keysyms(mapping.get());
    for (int key = 0; key < count; ++key) {
        if (symbols[key * mapping->keysyms_per_keycode] == symbol) {
            return xcb_keycode_t(setup->min_keycode + key);
        }
    }
    return 0;
}

bool Desk::isPanel(xcb_window_t window) const
{
    const auto sizeCookie = xcb_get_geometry(_connection, window);
    const auto kindCookie = xcb_get_window_attributes(_connection, window);
    const Reply<xcb_get_geometry_reply_t> size(
        xcb_get_geometry_reply(_connection, sizeCookie, nullptr));
    const Reply<xcb_get_window_attributes_reply_t> kind(
        xcb_get_window_attributes_reply(_connection, kindCookie, nullptr));
    return size && kind && kind->_class == XCB_WINDOW_CLASS_INPUT_OUTPUT
        && size->width >= LeastWidth && size->height >= LeastHeight;
}
