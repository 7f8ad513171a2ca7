// The colours of the menus that belong to the panel: a dark menu on a dark panel, a bright one on a
// bright panel.

#pragma once

#include <functional>

class QMenu;
struct GridColors;

// Gives a menu the colours of the window for this time; on a window that is not to be seen, those
// of the desktop.
void setMenuColors(QMenu &menu, const GridColors &colors);
// The same each time the menu opens. `colors` is asked then, for as long as the menu lives.
void followColors(QMenu &menu, std::function<GridColors()> colors);
