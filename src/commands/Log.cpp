#include "commands/Log.h"

Q_LOGGING_CATEGORY(lcCommands, "ortu.commands", QtInfoMsg)
