#include "grid/Log.h"

Q_LOGGING_CATEGORY(lcGrid, "ortu.grid", QtInfoMsg)
