#include "icons/Log.h"

Q_LOGGING_CATEGORY(lcIcons, "ortu.icons", QtInfoMsg)
