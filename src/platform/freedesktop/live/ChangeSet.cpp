#include "platform/freedesktop/live/ChangeSet.h"

#include <algorithm>

void ChangeSet::add(const QString &path)
{
    const auto known = _changes.find(path);
    if (known == _changes.end()) {
        _changes.insert(path, Change::Added);
    } else if (*known == Change::Removed) {
        *known = Change::Changed;
    }
}

void ChangeSet::remove(const QString &path)
{
    const auto known = _changes.find(path);
    if (known != _changes.end() && *known == Change::Added) {
        _changes.erase(known);
    } else {
        _changes.insert(path, Change::Removed);
    }
}

void ChangeSet::change(const QString &path)
{
    if (!_changes.contains(path)) {
        _changes.insert(path, Change::Changed);
    }
}

QList<LiveQuery::Update> ChangeSet::inParts(qsizetype mostPaths) const
{
    QStringList paths = _changes.keys();
    std::sort(paths.begin(), paths.end());
    QList<LiveQuery::Update> parts;
    for (qsizetype i = 0; i < paths.size(); ++i) {
        if (i % mostPaths == 0) {
            parts.append(LiveQuery::Update());
        }
        LiveQuery::Update &part = parts.last();
        switch (_changes[paths[i]]) {
        case Change::Added:
            part.added.append(paths[i]);
            break;
        case Change::Removed:
            part.removed.append(paths[i]);
            break;
        case Change::Changed:
            part.changed.append(paths[i]);
            break;
        }
    }
    return parts;
}
