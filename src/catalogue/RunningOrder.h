// The arithmetic of running applications: which entries stay, and who was in front when.

#pragma once

#include "catalogue/AppList.h"

namespace RunningOrder {

// The fresh list, but with the entry that was there before wherever one is equal, so that it keeps
// its icon.
AppList refreshed(const AppList &before, const AppList &fresh);

// Moves an application to the end of the order in which applications came to the front.
void moveToFront(AppList &frontApps, const AppRef &app);

// The application that was in front before `self`: the last of the front order that is not `self`,
// else the last running one that is not. When `self` is all there is, it is the answer; null when
// there is nothing.
AppRef lastActive(const AppList &frontApps, const AppList &runningApps, const AppRef &self);

} // namespace RunningOrder
