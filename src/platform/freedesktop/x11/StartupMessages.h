// The messages by which programs tell of starts, put together from their parts. Every program may
// send them, so they are held to a length, and no more than a few are kept while they are not
// whole.
// https://specifications.freedesktop.org/startup-notification-spec/startup-notification-latest.txt

#pragma once

#include <QByteArray>
#include <QHash>

#include <xcb/xcb.h>

class StartupMessages final
{
public:
    enum class Part { First, Next };

    // Takes a part that a window has sent. The message once that ends it, otherwise empty.
    QByteArray take(const xcb_client_message_event_t &event, Part part);

    // The identifier of the start that a message says has ended; empty for any other message.
    static QByteArray endedStart(const QByteArray &message);

private:
    // By the window that marks them.
    QHash<xcb_window_t, QByteArray> _begun;
};
