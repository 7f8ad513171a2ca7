#include "platform/freedesktop/DisplayCompositing.h"

#include "platform/freedesktop/XConnection.h"

#include <QByteArray>
#include <QGuiApplication>

namespace {

// A manager owns a selection that is named after its screen.
// https://specifications.freedesktop.org/wm-spec/latest/ar01s08.html
bool hasManager(xcb_connection_t *connection, int screen)
{
    const QByteArray name = "_NET_WM_CM_S" + QByteArray::number(screen);
    const XReply<xcb_intern_atom_reply_t> atom(xcb_intern_atom_reply(connection,
        xcb_intern_atom(connection, 0, quint16(name.size()), name.constData()), nullptr));
    if (!atom) {
        return false;
    }
    const XReply<xcb_get_selection_owner_reply_t> answer(xcb_get_selection_owner_reply(
        connection, xcb_get_selection_owner(connection, atom->atom), nullptr));
    return answer && answer->owner != XCB_WINDOW_NONE;
}

} // namespace

bool DisplayCompositing::isActive() const
{
    const QString platform = QGuiApplication::platformName();
    if (platform != QLatin1String("xcb")) {
        return platform.startsWith(QLatin1String("wayland"));
    }
    int screen = 0;
    xcb_connection_t *const connection = xcb_connect(nullptr, &screen);
    const bool isActive =
        xcb_connection_has_error(connection) == 0 && hasManager(connection, screen);
    xcb_disconnect(connection);
    return isActive;
}
