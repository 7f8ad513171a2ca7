// The log category of the adapters, which is that of the interfaces.

#pragma once

#include "platform/Log.h"
