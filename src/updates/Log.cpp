#include "updates/Log.h"

Q_LOGGING_CATEGORY(lcUpdates, "ortu.updates", QtInfoMsg)
