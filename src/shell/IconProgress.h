// The program's icon with a bar across it that tells how far the search for applications has come.

#pragma once

#include <QImage>

namespace IconProgress {

// The blank icon with a white frame of one point, a twelfth of its size in from each edge, which a
// white bar fills from the left by `step` parts of `count`; more or less than all of it counts as
// all or none. As large and as sharp as the blank icon; null when `count` is less than 1 or the
// blank icon is null.
QImage progressIcon(const QImage &blankIcon, int step, int count);

} // namespace IconProgress
