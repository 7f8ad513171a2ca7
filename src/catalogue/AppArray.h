// One of the catalogue's lists, as the rest of the program is handed it: flat or in bunches.
//
// It refers to the list and owns nothing; it is valid as long as the catalogue. Two are equal when
// they refer to the same list, whatever it holds. A list of bunches without any bunch counts as
// flat.

#pragma once

#include "catalogue/AppList.h"

class AppArray
{
public:
    AppArray() = default;
    explicit AppArray(const AppList &list)
        : _list(&list)
    { }
    explicit AppArray(const BunchList &bunches)
        : _bunches(&bunches)
    { }

    bool isNull() const { return !_list && !_bunches; }
    bool isFlat() const { return !_bunches || _bunches->isEmpty(); }
    // Elements of the list: applications, or bunches.
    qsizetype count() const { return _list ? _list->size() : _bunches ? _bunches->size() : 0; }

    // What the list holds as bunches; a flat list is one bunch, the null list none.
    BunchList bunches() const
    {
        return _bunches ? *_bunches : _list ? BunchList { *_list } : BunchList {};
    }
    AppList apps() const { return _list ? *_list : flattened(bunches()); }

    friend bool operator==(const AppArray &, const AppArray &) = default;

private:
    const AppList *_list = nullptr;
    const BunchList *_bunches = nullptr;
};
