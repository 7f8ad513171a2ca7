// What every test of the shell that shows something begins with.

#pragma once

#include "TestCase.h"

// A warning that the test has not announced fails it, except for what the offscreen display says
// about windows that it shows.
inline void expectNoWarnings()
{
    QTest::failOnWarning(QRegularExpression(u"^(?!This plugin does not support )."_s));
}
