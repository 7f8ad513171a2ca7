#include "shell/base/Log.h"

Q_LOGGING_CATEGORY(lcShell, "ortu.shell", QtInfoMsg)
