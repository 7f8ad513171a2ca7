// What lets a window come to the front on behalf of the user: window managers refuse windows that
// cannot say when they were asked for.

#pragma once

#include <QString>
#include <QtGlobal>

struct ActivationStamp
{
    // When the user asked, in milliseconds of the display's own clock; 0 when it is not known.
    quint32 time = 0;
    // What another program handed on that acted for the user: the identifier of a start-up
    // notification, or a token of the display. Empty for none.
    QString startupId;
};
