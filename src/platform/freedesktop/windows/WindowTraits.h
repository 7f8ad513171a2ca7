// What a window says of itself, and the server of it.

#pragma once

#include "platform/freedesktop/x11/XConnection.h"

#include <QString>

struct WindowTraits
{
    xcb_window_t window = XCB_WINDOW_NONE;

    // The two halves of WM_CLASS.
    QString instanceName;
    QString className;
    // What its toolkit says the application is, as the ID of a desktop entry without its ending.
    QString gtkApplicationId;
    QString kdeDesktopFile;
    // The start-up identifier that its program got along.
    QString startupId;
    // The window that this one is a dialog of; none when it stands for itself.
    xcb_window_t transientFor = XCB_WINDOW_NONE;

    // Made by a program on another machine.
    bool isElsewhere = false;
    // The process that made it, as this machine counts; 0 when that cannot be told.
    qint64 processId = 0;

    // A window as the task bar lists them: no dock, no desktop, nothing that wants to be skipped.
    bool isOrdinary = true;
    // Iconified or otherwise put away by the user.
    bool isHidden = false;
    // Takes a polite request to close.
    bool isClosable = false;
};

namespace WindowTraitsReader {

// Reads some windows together: two exchanges with the server, however many there are. A window that
// is gone is left out.
QList<WindowTraits> read(XConnection &connection, const QList<xcb_window_t> &windows);

// Whether a change of this property may change the traits.
bool isRead(const XConnection &connection, xcb_atom_t property);

} // namespace WindowTraitsReader
