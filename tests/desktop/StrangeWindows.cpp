// Windows as no well-behaved program makes them:
//
//   StrangeWindows COUNT CLASS [pid=N] [title=BYTES] [skip] [rude] [dialog]
//
// shows COUNT windows of a class, claiming to be process N, with a title of so many bytes, kept out
// of the task bar, not to be closed politely, each a dialog of the one before. Every line of
// standard input that names a class gives it to all windows; `close` destroys them; the end of the
// input ends the program.

#include "desktop/Programs.h"

#include <array>
#include <iostream>

namespace {

class Maker : public XClient
{
public:
    // At a place of its own choice: window managers take their time to find places for hundreds.
    explicit Maker(const QByteArrayList &options)
    {
        for (int i = 0; i < options[1].toInt(); ++i) {
            const xcb_window_t made = xcb_generate_id(connection);
            xcb_create_window(connection, XCB_COPY_FROM_PARENT, made, root, 0, 0, 60, 40, 0,
                XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
            const std::array<uint32_t, 18> placedByUser { 1 };
            xcb_change_property(connection, XCB_PROP_MODE_REPLACE, made, XCB_ATOM_WM_NORMAL_HINTS,
                XCB_ATOM_WM_SIZE_HINTS, 32, uint32_t(placedByUser.size()), placedByUser.data());
            setClass(made, options[2]);
            for (const QByteArray &option : options) {
                const int value = option.mid(option.indexOf('=') + 1).toInt();
                if (option.startsWith("pid=")) {
                    setNumber(made, atom("_NET_WM_PID"), XCB_ATOM_CARDINAL, uint32_t(value));
                } else if (option.startsWith("title=")) {
                    setText(made, XCB_ATOM_WM_NAME, QByteArray(value, 'x'));
                } else if (option == "skip") {
                    setNumber(made, atom("_NET_WM_STATE"), XCB_ATOM_ATOM,
                        atom("_NET_WM_STATE_SKIP_TASKBAR"));
                }
            }
            if (!options.contains("rude")) {
                setNumber(made, atom("WM_PROTOCOLS"), XCB_ATOM_ATOM, atom("WM_DELETE_WINDOW"));
            }
            if (options.contains("dialog") && !windows.empty()) {
                setNumber(made, XCB_ATOM_WM_TRANSIENT_FOR, XCB_ATOM_WINDOW, windows.last());
            }
            windows.append(made);
            xcb_map_window(connection, made);
        }
        xcb_flush(connection);
    }
    void setClass(xcb_window_t of, const QByteArray &name)
    {
        setText(of, XCB_ATOM_WM_CLASS, name + '\0' + name + '\0');
    }

    QList<xcb_window_t> windows;

private:
    void setText(xcb_window_t of, xcb_atom_t property, const QByteArray &text)
    {
        xcb_change_property(connection, XCB_PROP_MODE_REPLACE, of, property, XCB_ATOM_STRING, 8,
            uint32_t(text.size()), text.constData());
    }
    void setNumber(xcb_window_t of, xcb_atom_t property, xcb_atom_t type, uint32_t number)
    {
        xcb_change_property(connection, XCB_PROP_MODE_REPLACE, of, property, type, 32, 1, &number);
    }
};

} // namespace

int main(int argc, char **argv)
{
    Maker maker(QByteArrayList(argv, argv + argc));
    for (std::string line; std::getline(std::cin, line); xcb_flush(maker.connection)) {
        for (const xcb_window_t window : std::as_const(maker.windows)) {
            if (line == "close") {
                xcb_destroy_window(maker.connection, window);
            } else {
                maker.setClass(window, QByteArray::fromStdString(line));
            }
        }
    }
    return 0;
}
