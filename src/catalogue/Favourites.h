// The favourites in two orders: bunches as arranged, and one flat list.
//
// The two are kept apart on purpose: moving an application between bunches leaves its place in the
// flat order alone. Every application stands in each order at most once. Indexes past an end are
// clamped; a negative bunch index counts as past the end.

#pragma once

#include "catalogue/AppList.h"

class Favourites final
{
public:
    const BunchList &bunches() const { return _bunches; }
    const AppList &flat() const { return _flat; }

    // Take over a stored order; a second mention of an application is dropped.
    void setBunches(const BunchList &bunches);
    void setFlat(const AppList &flat);
    // Gives up the flat order for that of the bunches.
    void flattenBunches() { _flat = flattened(_bunches); }

    // These answer false when the application already stands there: nothing changed, nothing to
    // announce or write.

    // Moves an application into a bunch, before the one that stands at the index now. A bunch that
    // this empties goes, and a bunch index past the end makes a new bunch.
    bool moveApp(const AppRef &app, qsizetype toBunch, qsizetype index);
    // Moves an application in the flat order; a new favourite gets a bunch of its own at the end.
    bool moveAppInFlatOrder(const AppRef &app, qsizetype index);
    // Moves an application into a bunch of its own, before the bunch that stands at the index now.
    void moveAppNewBunchAtIndex(const AppRef &app, qsizetype newBunchAtIndex);

    // Removes the bunches that this empties; one that was empty before stays.
    bool removeApps(const PathSet &apps);
    // Leaves the bunches that this empties where they are.
    bool removeAppsKeepingBunches(const PathSet &apps);

    // Puts another application into the place of one in the bunches. The flat order is left alone.
    void replaceApp(qsizetype bunch, qsizetype index, const AppRef &app)
    {
        _bunches[bunch][index] = app;
    }

    friend bool operator==(const Favourites &, const Favourites &) = default;

private:
    struct Place
    {
        qsizetype bunch = -1;
        qsizetype index = -1;
        bool isFound() const { return bunch >= 0; }
    };

    Place placeOf(const AppRef &app) const;
    void appendToFlat(const AppRef &app);

    BunchList _bunches;
    AppList _flat;
};
