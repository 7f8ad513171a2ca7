// One icon, from the bundle to the picture: by way of the pictures that are kept, or decoded and
// then kept. On any thread.

#pragma once

#include "icons/IconMeasurement.h"

#include <QString>

class IconProvider;
class IconStore;
struct KeptIcon;

// What loading or measuring an icon gives.
struct LoadedIcon
{
    // Null when the bundle has no icon.
    QImage image;
    // Of an operation that measures, or known already.
    IconMeasurement measurement;
};

namespace IconFetch {

// A kept icon as one that was loaded.
LoadedIcon loaded(const KeptIcon &kept);

// Null, after a log line, when there is no icon. Nothing is kept without a store.
LoadedIcon load(const QString &bundle, int size, const IconProvider &provider, IconStore *store);

} // namespace IconFetch
