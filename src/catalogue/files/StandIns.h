// Stored paths and shown ones. A desktop lets users replace an application by a copy of their own
// (see Items::standInFor()), which then has its place in the lists; the files keep the path that
// was put into them, so that the place falls back to the original when the copy goes.
//
// Answers change with a scan. Knows no file.

#pragma once

#include "catalogue/files/CatalogueFiles.h"
#include "catalogue/files/PathBunches.h"

class Items;

class StandIns final
{
public:
    // The items outlive this.
    explicit StandIns(const Items &items)
        : _items(items)
    { }

    // Each path replaced by what stands in for it.
    PathBunches replaced(const PathBunches &stored) const;

    // The same, where it is mentioned first. Bunches that this empties go.
    PathBunches shown(const PathBunches &stored) const { return standardized(replaced(stored)); }

    // A change of shown paths in the paths of the list that it changes. Where several of these
    // stand for one application, the first keeps its name, and all are moved or removed together.
    CatalogueFiles::Change toStore(
        const CatalogueFiles::Change &change, const PathBunches &stored) const;

private:
    const Items &_items;
};
