// Which group is shown for the one that was asked for.

#pragma once

#include <QtGlobal>

// With `isOptionHeld` the included applications become all of them. With an orientation of 0, which
// knows no bunches, a bunched group becomes its flat twin.
int groupToShowConsideringModifiers(int group, bool isOptionHeld, qint64 orientation);
