// What the user arranged by hand, step by step, so that it can be taken back and done again.
//
// Favourites, exclusions and corrected colours share one history, in the order in which they were
// changed. It knows
// applications by their paths alone and so outlasts scans; it ends with the program.

#pragma once

#include "catalogue/files/PathBunches.h"
#include "icons/ColorKey.h"

#include <QList>
#include <QStringList>

#include <optional>

// The favourites in their two orders.
struct Arrangement
{
    PathBunches bunches;
    QStringList flat;

    friend bool operator==(const Arrangement &, const Arrangement &) = default;
};

struct ArrangementStep
{
    enum class Kind { Move, Add, Remove, Exclude, Include, Recolor };
    enum class Side { Before, After };

    Kind kind = Kind::Move;
    // The applications that the step was about; at least one.
    QStringList paths;
    // The favourites before and after the step. Exclusions and colours need neither.
    Arrangement before;
    Arrangement after;
    // The colour that the user gave to the application, before and after the step.
    std::optional<SortedColor> colorBefore = {};
    std::optional<SortedColor> colorAfter = {};

    bool isOfFavourites() const
    {
        return kind == Kind::Move || kind == Kind::Add || kind == Kind::Remove;
    }

    // The favourites on one side of the step, where `now` is what they are. When they are no longer
    // as the other side left them, only the applications of the step move: beside the neighbours
    // that they had, or into a bunch of their own where these are gone or they had none.
    Arrangement favouritesOn(Side side, const Arrangement &now) const;
};

class ArrangementHistory final
{
public:
    // Steps that are kept.
    static constexpr qsizetype Depth = 20;

    // What undo() and redo() would return; null when there is no such step. Valid until the history
    // changes.
    const ArrangementStep *nextToUndo() const;
    const ArrangementStep *nextToRedo() const;

    // Drops what could be done again, and the oldest step beyond the depth.
    void add(const ArrangementStep &step);
    // These go one step back or forth; the caller does what the step says.
    std::optional<ArrangementStep> undo();
    std::optional<ArrangementStep> redo();

private:
    QList<ArrangementStep> _steps;
    // Of these, counted from the oldest; the others were taken back.
    qsizetype _doneCount = 0;
};
