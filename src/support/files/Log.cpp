#include "support/files/Log.h"

Q_LOGGING_CATEGORY(lcSupport, "ortu.support", QtInfoMsg)
