// The applications that are pinned in the docks and panels of a freedesktop system.
//
// GNOME Shell, Plasma and Xfce each have a list of their own. Where one of them is running its list
// counts alone: what another desktop kept for its panel is not on the screen. Elsewhere all three
// count, in this order. Plank, and the property list of a Dock, go with any desktop and come
// behind.

#pragma once

#include "platform/PinnedApplications.h"

class FreedesktopPins final : public PinnedApplications
{
public:
    // Data folders: the one that counts most first. Desktops: the names by which the running one
    // goes. `preferencesFolder`: where the property list is looked for.
    FreedesktopPins(
        QStringList dataFolders, QStringList currentDesktops, QString preferencesFolder);

    QStringList paths() const override;

private:
    QStringList pins() const;

    const QStringList _dataFolders;
    const QStringList _currentDesktops;
    const QString _preferencesFolder;
    const QString _configurationHome;
};
