// The log category of this folder and of the one above.

#pragma once

#include <QLoggingCategory>

Q_DECLARE_LOGGING_CATEGORY(lcIcons)
