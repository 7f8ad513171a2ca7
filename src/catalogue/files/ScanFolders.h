// The list of folders to scan, as the preference "searchDirectories" holds it: dictionaries with a
// "path".

#pragma once

#include <QStringList>
#include <QVariantMap>

class SearchPaths;
class UserDefaults;

namespace ScanFolders {

// Registers the desktop's application folders as the default, and carries over the older preference
// "scanDirectories", a list of path strings, when it holds any.
void registerDefaults(UserDefaults &defaults, const SearchPaths &searchPaths);

// The folders to scan in stored order, standardised. Items of the list without a path are passed
// over.
QStringList pathsToScan(const UserDefaults &defaults);

// Those of the paths, in standard form, that lie in no other one of them; each once. Left out are
// relative ones, and those too long for any file.
QStringList withoutNested(const QStringList &paths);

} // namespace ScanFolders
