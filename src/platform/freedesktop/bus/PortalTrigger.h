// A key with modifiers as desktops write it to each other:
// https://specifications.freedesktop.org/shortcuts-spec/latest/

#pragma once

#include <QString>

struct HotKeyCombination;

// Such as "CTRL+Tab" or "SHIFT+LOGO+a". A key is named by what the US layout has at its place,
// since this way of writing knows no places. Empty for a key that has no name there.
QString portalTrigger(const HotKeyCombination &combination);
