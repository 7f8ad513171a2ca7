// Windows as no well-behaved program makes them:
//
//   StrangeWindows COUNT CLASS [pid=N] [rude]
//
// shows COUNT windows of a class, claiming to be process N, not to be closed politely. Every line
// of standard input that names a class gives it to all windows; `close` destroys them; the end of
// the input ends the program.

#include "desktop/XClient.h"

#include <iostream>

namespace {

class Maker : public XClient
{
public:
    explicit Maker(const QByteArrayList &options)
    {
        for (int i = 0; i < options[1].toInt(); ++i) {
            const xcb_window_t made = xcb_generate_id(connection);
            xcb_create_window(connection, XCB_COPY_FROM_PARENT, made, root, 0, 0, 60, 40, 0,
                XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
            setClass(made, options[2]);
            for (const QByteArray &option : options) {
                if (option.startsWith("pid=")) {
                    setNumber(made, "_NET_WM_PID", XCB_ATOM_CARDINAL, option.mid(4).toUInt());
                }
            }
            if (!options.contains("rude")) {
                setNumber(made, "WM_PROTOCOLS", XCB_ATOM_ATOM, atom("WM_DELETE_WINDOW"));
            }
            windows.append(made);
            xcb_map_window(connection, made);
        }
        xcb_flush(connection);
    }
    void setClass(xcb_window_t of, const QByteArray &name) const
    {
        const QByteArray text = name + '\0' + name + '\0';
        xcb_change_property(connection, XCB_PROP_MODE_REPLACE, of, XCB_ATOM_WM_CLASS,
            XCB_ATOM_STRING, 8, uint32_t(text.size()), text.constData());
    }

    QList<xcb_window_t> windows;

private:
    void setNumber(xcb_window_t of, const QByteArray &property, xcb_atom_t type, uint32_t number)
    {
        xcb_change_property(
            connection, XCB_PROP_MODE_REPLACE, of, atom(property), type, 32, 1, &number);
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
