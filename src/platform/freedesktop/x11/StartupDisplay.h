// The X server as the starter of a program sees it: it gives the time, and passes on to window
// managers and panels what is being started.
//
// Each object has a connection of its own, so that several may be used at once on several threads.
// Without a display everything is empty and does nothing.

#pragma once

#include <QByteArray>
#include <QList>

#include <optional>
#include <utility>
#include <xcb/xcb.h>

class StartupDisplay final
{
public:
    // Connects to the display that the environment names. Takes a second at most: one that does not
    // answer, as when a program has the server to itself, counts as none.
    StartupDisplay();
    ~StartupDisplay();
    Q_DISABLE_COPY_MOVE(StartupDisplay)

    // The number of the screen that programs start on.
    int screen() const { return _screen; }

    // The server's present time, in its own milliseconds. Empty when it is not told within a
    // second.
    std::optional<quint32> time();

    // Tells window managers and panels of a start: "new", "change" or "remove", with its keys and
    // their values. A value that is empty is left out.
    // https://specifications.freedesktop.org/startup-notification-spec/startup-notification-latest.txt
    using Values = QList<std::pair<QByteArray, QByteArray>>;
    void broadcast(const QByteArray &kind, const Values &values);

private:
    // Looks again whenever the server has sent something. False after a second of that.
    template <typename Look> bool waitUntil(Look isThere);
    // XCB_ATOM_NONE when the server does not answer.
    xcb_atom_t atom(const QByteArray &name);
    bool takeTime(quint32 *time);
    void send(const QByteArray &message);

    xcb_connection_t *_connection = nullptr;
    int _screen = 0;
    xcb_window_t _root = XCB_WINDOW_NONE;
    // Never shown: its property tells the time, and its number marks our messages.
    xcb_window_t _window = XCB_WINDOW_NONE;
};
