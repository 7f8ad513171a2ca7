// The log category of this folder. Every module has one named after it, so that a reader of the log
// sees which part of the program speaks.

#pragma once

#include <QLoggingCategory>

Q_DECLARE_LOGGING_CATEGORY(lcSupport)
