// A list of paths in bunches, as the catalogue's files hold it, and how the changes of two programs
// to one list come together. A flat list is one bunch. Knows no file.

#pragma once

#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>

using PathBunches = QList<QStringList>;

QStringList flattened(const PathBunches &bunches);

QSet<QString> pathsOf(const PathBunches &bunches);

// Every path in its standard form, and only where it is mentioned first. Bunches that this empties
// go.
PathBunches standardized(const PathBunches &bunches);

// `theirs` with the changed paths where `mine` has them, or without those that `mine` does not
// have. Such a path comes behind the one that it follows in its bunch, or before the one that it
// precedes; where neither is left there, it gets a bunch of its own beside the same neighbours.
// Everything else stays as it is in `theirs`; a bunch that a change empties goes.
PathBunches merged(
    const PathBunches &theirs, const PathBunches &mine, const QSet<QString> &changed);
