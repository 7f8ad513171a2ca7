// Paths of items in folders, and what the file system says of them. Paths are absolute and in
// standard form.

#pragma once

#include "platform/freedesktop/base/FileState.h"

#include <QStringList>

#include <optional>
#include <sys/stat.h>

namespace FolderItems {

QString inFolder(const QString &folder, const QString &name);
QString parentOf(const QString &path);
QString nameOf(const QString &path);

// Links followed; empty when there is nothing.
std::optional<struct stat> statusOf(const QString &path);
bool isFolder(const QString &path);
// Whether there is anything, be it a link that leads nowhere.
bool isThere(const QString &path);
bool isLink(const QString &path);
// Of any item; of a bundle it is that of its folder, which does not tell every change inside.
FileState stateOf(const QString &path);
// In no order. Left out are names that are not valid UTF-8, which no scan takes. Empty for a folder
// that cannot be read.
QStringList namesIn(const QString &path);

} // namespace FolderItems
