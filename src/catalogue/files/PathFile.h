// One file of paths: a property list that is an array of paths, or an array of such arrays.

#pragma once

#include "catalogue/files/PathBunches.h"
#include "support/files/PropertyList.h"

namespace PathFile {

enum class Shape { Flat, Bunched };

struct Document
{
    PropertyList::State state = PropertyList::State::Absent;
    // In stored order. Of a damaged file, what can be used: all but the entries that are no paths.
    PathBunches paths;
    QString error;
};

// Takes the value of such a property list apart.
Document fromPropertyList(const QVariant &value, Shape shape);
// Whether a value of a property list is a path that can be written again.
bool isPath(const QVariant &value);

// Logs nothing, as the caller knows what becomes of the file.
Document read(const QString &path, Shape shape);

// The property list for bunches; a flat one holds all their paths in one array.
QVariant propertyList(const PathBunches &bunches, Shape shape);

} // namespace PathFile
