// Which applications a typed filter lets through.

#pragma once

#include <QString>

class OTApp;

// A filter of one ASCII letter or digit matches where a part of the name begins with it; any other
// matches the name people see where it contains the filter, in whatever case. The empty one matches
// everything.
bool matches(const QString &filter, const OTApp &app);
