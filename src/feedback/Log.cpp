#include "feedback/Log.h"

Q_LOGGING_CATEGORY(lcFeedback, "ortu.feedback", QtInfoMsg)
