// Paths in the one form in which the program compares them.

#pragma once

#include <QString>

// The path with a leading tilde expanded, `.`, `..`, double and trailing slashes removed; `..` of
// the root is the root. Nothing on disk is looked at: links stay as they are. The empty path stays
// empty.
QString standardizedPath(const QString &path);
