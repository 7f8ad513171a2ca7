// Paths in the one form in which the program compares them.

#pragma once

#include <QDir>
#include <QString>

// The path with a leading tilde expanded, `.`, `..`, double and trailing slashes removed; `..` of
// the root is the root. Nothing on disk is looked at: links stay as they are. The empty path stays
// empty.
QString standardizedPath(const QString &path);

// The path with the home folder written as a tilde, when it lies there; otherwise as it is. Another
// folder may stand for the home folder, such as what it links to; none when that is empty.
QString abbreviatedPath(const QString &path, const QString &home = QDir::homePath());
