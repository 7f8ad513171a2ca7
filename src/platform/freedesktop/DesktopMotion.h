// Finds what the desktop says of movement. The first of these that says anything decides:
//
//   1. On KDE, "AnimationDurationFactor" of kdeglobals: 0 is its way to say none.
//   2. "Gtk/EnableAnimations" of the X server's settings daemon. It speaks for the desktop that
//      runs now, and knows more than the user's choice: GNOME's also says no where the display is
//      remote or drawn without a graphics card.
//   3. The GSettings key "enable-animations" of the running desktop, which is GNOME's but for
//      Cinnamon and MATE. Only a user's or an administrator's choice counts, or a distribution that
//      says no: that programs move by default says nothing about this desktop.
//   4. "gtk-enable-animations" of GTK's settings files.
//
// Nothing is looked at before it is first asked for. Files are read again when they have changed.
// GSettings is asked through its back end and without a GSettings object, which would listen for
// changes: with the usual back end that means the session bus, and threads that stay.

#pragma once

#include "platform/Motion.h"
#include "platform/freedesktop/base/IconPlaces.h"

#include <functional>
#include <memory>

class XConnection;

class DesktopMotion final : public Motion
{
public:
    // Null for a display without X server. The connection outlives this.
    using Display = std::function<XConnection *()>;

    DesktopMotion(IconPlaces places, Display display);
    ~DesktopMotion() override;

    bool isReduced() const override;

private:
    class Sources;

    const IconPlaces _places;
    const Display _display;
    // Made when first needed.
    mutable std::unique_ptr<Sources> _sources;
};
