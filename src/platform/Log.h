// The log category of this folder and of the adapters below it.

#pragma once

#include <QLoggingCategory>

Q_DECLARE_LOGGING_CATEGORY(lcPlatform)
