// Windows as no well-behaved program makes them:
//
//   StrangeWindows COUNT CLASS [pid=N] [title=BYTES] [skip] [rude] [dialog]
//
// shows COUNT windows of a class, claiming to be process N, with a title of so many bytes, kept out
// of the task bar, not to be closed politely, each a dialog of the one before. Every line of
// standard input that names a class gives it to all windows; `close` destroys them; the end of the
// input ends the program.

#include <array>
#include <cstdlib>
#include <iostream>
#include <string>
#include <vector>
#include <xcb/xcb.h>

namespace {

class Display
{
public:
    explicit Display(xcb_connection_t *connection)
        : _connection(connection)
        , _screen(xcb_setup_roots_iterator(xcb_get_setup(connection)).data)
    { }

    xcb_atom_t atom(const std::string &name)
    {
        xcb_intern_atom_reply_t *reply = xcb_intern_atom_reply(_connection,
            xcb_intern_atom(_connection, 0, uint16_t(name.size()), name.data()), nullptr);
        const xcb_atom_t atom = reply->atom;
        std::free(reply);
        return atom;
    }
    void setText(xcb_window_t window, xcb_atom_t property, const std::string &text)
    {
        xcb_change_property(_connection, XCB_PROP_MODE_REPLACE, window, property, XCB_ATOM_STRING,
            8, uint32_t(text.size()), text.data());
    }
    void setNumber(xcb_window_t window, xcb_atom_t property, xcb_atom_t type, uint32_t number)
    {
        xcb_change_property(
            _connection, XCB_PROP_MODE_REPLACE, window, property, type, 32, 1, &number);
    }
    void setClass(xcb_window_t window, const std::string &name)
    {
        std::string both = name;
        both += '\0';
        both += name;
        both += '\0';
        setText(window, XCB_ATOM_WM_CLASS, both);
    }
    // At a place of its own choice: window managers take their time to find places for hundreds.
    xcb_window_t makeWindow()
    {
        const xcb_window_t window = xcb_generate_id(_connection);
        xcb_create_window(_connection, XCB_COPY_FROM_PARENT, window, _screen->root, 0, 0, 60, 40, 0,
            XCB_WINDOW_CLASS_INPUT_OUTPUT, _screen->root_visual, 0, nullptr);
        const std::array<uint32_t, 18> placedByUser { 1 };
        xcb_change_property(_connection, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_NORMAL_HINTS,
            XCB_ATOM_WM_SIZE_HINTS, 32, uint32_t(placedByUser.size()), placedByUser.data());
        return window;
    }

private:
    xcb_connection_t *_connection;
    xcb_screen_t *_screen;
};

} // namespace

int main(int argc, char **argv)
{
    xcb_connection_t *connection = xcb_connect(nullptr, nullptr);
    if (argc < 3 || xcb_connection_has_error(connection) != 0) {
        return 1;
    }
    Display display(connection);
    bool isRude = false;
    bool isDialog = false;
    std::vector<xcb_window_t> windows;
    for (int i = 0; i < std::atoi(argv[1]); ++i) {
        const xcb_window_t window = display.makeWindow();
        display.setClass(window, argv[2]);
        for (int k = 3; k < argc; ++k) {
            const std::string option(argv[k]);
            const std::string value = option.substr(std::min(option.find('=') + 1, option.size()));
            if (option.starts_with("pid=")) {
                display.setNumber(window, display.atom("_NET_WM_PID"), XCB_ATOM_CARDINAL,
                    uint32_t(std::stoul(value)));
            } else if (option.starts_with("title=")) {
                display.setText(window, XCB_ATOM_WM_NAME, std::string(std::stoul(value), 'x'));
            } else if (option == "skip") {
                display.setNumber(window, display.atom("_NET_WM_STATE"), XCB_ATOM_ATOM,
                    display.atom("_NET_WM_STATE_SKIP_TASKBAR"));
            }
            isRude = isRude || option == "rude";
            isDialog = isDialog || option == "dialog";
        }
        if (!isRude) {
            display.setNumber(window, display.atom("WM_PROTOCOLS"), XCB_ATOM_ATOM,
                display.atom("WM_DELETE_WINDOW"));
        }
        if (isDialog && !windows.empty()) {
            display.setNumber(window, XCB_ATOM_WM_TRANSIENT_FOR, XCB_ATOM_WINDOW, windows.back());
        }
        windows.push_back(window);
        xcb_map_window(connection, window);
    }
    xcb_flush(connection);
    for (std::string line; std::getline(std::cin, line); xcb_flush(connection)) {
        for (const xcb_window_t window : windows) {
            if (line == "close") {
                xcb_destroy_window(connection, window);
            } else {
                display.setClass(window, line);
            }
        }
    }
    return 0;
}
