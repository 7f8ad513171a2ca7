#include "support/Log.h"

Q_LOGGING_CATEGORY(lcSupport, "ortu.support", QtInfoMsg)
