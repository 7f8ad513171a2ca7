// Paths in the one form in which the program compares them.

#pragma once

#include <QString>

// The path with a leading tilde expanded, `.`, `..`, double and trailing slashes removed. Nothing
// on disk is looked at: links stay as they are. The empty path stays empty.
QString standardizedPath(const QString &path);
