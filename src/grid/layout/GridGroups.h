// The groups as the grid shows them.

#pragma once

#include <QString>

// Which group is shown for the one that was asked for. With `isOptionHeld` the included
// applications become all of them. With an orientation of 0, which knows no bunches, a bunched
// group becomes its flat twin.
int groupToShowConsideringModifiers(int group, bool isOptionHeld, qint64 orientation);

namespace GridGroups {

// In bunches or not.
bool isFavourites(int group);
bool isExcluded(int group);
// Whether the group comes in bunches, so that the user can choose its rows or columns.
bool isBunched(int group);

// The name under which the catalogue announces changes of the group's list; empty where none is
// announced.
QString listOf(int group);
// What the group is called, for people.
QString titleOf(int group);

enum class Known { Nothing, Applications };
// Why the group is empty and what can be done about it, for people; `known` says whether the
// catalogue holds any application at all.
QString hintWhenEmpty(int group, Known known);

} // namespace GridGroups
