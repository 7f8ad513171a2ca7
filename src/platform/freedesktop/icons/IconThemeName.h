// Which icon theme the user has chosen, wherever the running desktop keeps that.
//
// The desktop's own setting comes first, then GTK's settings files, then well-known themes.
// A theme that is not installed is passed over.

#pragma once

#include "platform/freedesktop/base/IconPlaces.h"

namespace IconThemeName {

// Never empty; "hicolor" when nothing better is installed.
QString current(const IconPlaces &places);

// The files whose change may mean another theme, whether they exist or not.
QStringList files(const IconPlaces &places);

// The GSettings schema that holds the theme of the running desktop. Empty when the desktop keeps it
// elsewhere, or the schema is not installed.
QString schema(const IconPlaces &places);

// Name of the setting in every such schema.
inline constexpr char settingName[] = "icon-theme";

} // namespace IconThemeName
