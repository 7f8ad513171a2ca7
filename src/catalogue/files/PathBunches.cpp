#include "catalogue/files/PathBunches.h"

#include "support/files/StandardPath.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace {

class Merge final
{
public:
    Merge(const PathBunches &theirs, const QSet<QString> &changed);

    void put(const PathBunches &mine, qsizetype bunch, qsizetype index);
    PathBunches takeResult() { return std::exchange(_result, {}); }

private:
    struct Place
    {
        qsizetype bunch = 0;
        qsizetype index = 0;
    };

    std::optional<Place> placeOf(const QString &path) const;
    std::optional<Place> placeBeside(const QStringList &bunch, qsizetype index) const;
    qsizetype placeOfNewBunch(const PathBunches &mine, qsizetype bunch) const;

    PathBunches _result;
    QSet<QString> _paths;
    // Of the path put last, which the next one mostly follows.
    Place _last;
};

Merge::Merge(const PathBunches &theirs, const QSet<QString> &changed)
{
    for (QStringList bunch : theirs) {
        const auto isChanged = [&](const QString &path) { return changed.contains(path); };
        if (bunch.removeIf(isChanged) == 0 || !bunch.isEmpty()) {
            _result.append(bunch);
        }
    }
    _paths = pathsOf(_result);
}

std::optional<Merge::Place> Merge::placeOf(const QString &path) const
{
    if (!_paths.contains(path)) {
        return std::nullopt;
    }
    if (_last.bunch < _result.size() && _result[_last.bunch].value(_last.index) == path) {
        return _last;
    }
    for (qsizetype bunch = 0; bunch < _result.size(); ++bunch) {
        const qsizetype index = _result[bunch].indexOf(path);
        if (index >= 0) {
            return Place { bunch, index };
        }
    }
    return std::nullopt;
}

// Where the path belongs by the nearest of its bunch that has a place.
std::optional<Merge::Place> Merge::placeBeside(const QStringList &bunch, qsizetype index) const
{
    for (qsizetype before = index - 1; before >= 0; --before) {
        if (const auto place = placeOf(bunch[before])) {
            return Place { place->bunch, place->index + 1 };
        }
    }
    for (qsizetype after = index + 1; after < bunch.size(); ++after) {
        if (const auto place = placeOf(bunch[after])) {
            return place;
        }
    }
    return std::nullopt;
}

qsizetype Merge::placeOfNewBunch(const PathBunches &mine, qsizetype bunch) const
{
    for (qsizetype before = bunch - 1; before >= 0; --before) {
        if (const auto place = placeBeside(mine[before], mine[before].size())) {
            return place->bunch + 1;
        }
    }
    for (qsizetype after = bunch + 1; after < mine.size(); ++after) {
        if (const auto place = placeBeside(mine[after], -1)) {
            return place->bunch;
        }
    }
    return _result.size();
}

void Merge::put(const PathBunches &mine, qsizetype bunch, qsizetype index)
{
    const QString &path = mine[bunch][index];
    if (const auto place = placeBeside(mine[bunch], index)) {
        _last = *place;
    } else {
        _last = { placeOfNewBunch(mine, bunch), 0 };
        _result.insert(_last.bunch, QStringList());
    }
    _result[_last.bunch].insert(_last.index, path);
    _paths.insert(path);
}

} // namespace

QStringList flattened(const PathBunches &bunches)
{
    QStringList paths;
    for (const QStringList &bunch : bunches) {
        paths += bunch;
    }
    return paths;
}

QSet<QString> pathsOf(const PathBunches &bunches)
{
    QSet<QString> paths;
    for (const QStringList &bunch : bunches) {
        for (const QString &path : bunch) {
            paths.insert(path);
        }
    }
    return paths;
}

PathBunches standardized(const PathBunches &bunches)
{
    PathBunches result;
    QSet<QString> seen;
    for (const QStringList &bunch : bunches) {
        QStringList paths;
        for (const QString &path : bunch) {
            const QString standard = standardizedPath(path);
            if (!seen.contains(standard)) {
                seen.insert(standard);
                paths.append(standard);
            }
        }
        if (bunch.isEmpty() || !paths.isEmpty()) {
            result.append(paths);
        }
    }
    return result;
}

PathBunches merged(const PathBunches &theirs, const PathBunches &mine, const QSet<QString> &changed)
{
    Merge merge(theirs, changed);
    for (qsizetype bunch = 0; bunch < mine.size(); ++bunch) {
        for (qsizetype index = 0; index < mine[bunch].size(); ++index) {
            if (changed.contains(mine[bunch][index])) {
                merge.put(mine, bunch, index);
            }
        }
    }
    return merge.takeResult();
}
