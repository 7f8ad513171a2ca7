// What becomes of single paths within a moment: added and removed again is nothing, removed and
// added again is changed.

#pragma once

#include "platform/LiveQuery.h"

#include <QHash>

class ChangeSet final
{
public:
    void add(const QString &path);
    void remove(const QString &path);
    void change(const QString &path);

    bool isEmpty() const { return _changes.isEmpty(); }
    // In parts of at most `mostPaths` each, every kind sorted by path.
    QList<LiveQuery::Update> inParts(qsizetype mostPaths) const;

private:
    enum class Change { Added, Removed, Changed };

    QHash<QString, Change> _changes;
};
