#include "icons/store/Log.h"

Q_LOGGING_CATEGORY(lcIcons, "ortu.icons", QtInfoMsg)
