#include "grid/drawing/Log.h"

Q_LOGGING_CATEGORY(lcGrid, "ortu.grid", QtInfoMsg)
