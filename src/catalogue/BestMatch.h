// Where a lost application may have gone.

#pragma once

#include "catalogue/AppArray.h"

// Among the candidates with the lost one's `name`, the only one, or the one whose path shares most
// trailing components with the lost one's; the first of equals. Null when there is none, or when
// several share nothing.
AppRef bestMatchForApp(const AppRef &app, const AppArray &inArray);
