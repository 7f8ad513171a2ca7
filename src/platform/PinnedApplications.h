// What the user keeps at hand in the desktop's own dock or panel. The base class is a desktop
// without one.

#pragma once

#include <QStringList>

class PinnedApplications
{
public:
    virtual ~PinnedApplications() = default;

    // The bundles, as absolute paths, in the order in which the desktop shows them, each once. Read
    // anew with every call; empty when there are none or the desktop does not tell.
    virtual QStringList paths() const { return {}; }
};
