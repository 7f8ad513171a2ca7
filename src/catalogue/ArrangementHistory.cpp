#include "catalogue/ArrangementHistory.h"

Arrangement ArrangementStep::favouritesOn(Side side, const Arrangement &now) const
{
    const Arrangement &from = side == Side::Before ? after : before;
    const Arrangement &to = side == Side::Before ? before : after;
    if (now == from) {
        return to;
    }
    // As the files merge the changes of two programs, so that list and file end up alike.
    const QSet<QString> moved(paths.begin(), paths.end());
    return { merged(now.bunches, to.bunches, moved),
        flattened(merged({ now.flat }, { to.flat }, moved)) };
}

const ArrangementStep *ArrangementHistory::nextToUndo() const
{
    return _doneCount > 0 ? &_steps[_doneCount - 1] : nullptr;
}

const ArrangementStep *ArrangementHistory::nextToRedo() const
{
    return _doneCount < _steps.size() ? &_steps[_doneCount] : nullptr;
}

void ArrangementHistory::add(const ArrangementStep &step)
{
    _steps.resize(_doneCount);
    _steps.append(step);
    if (_steps.size() > Depth) {
        _steps.removeFirst();
    }
    _doneCount = _steps.size();
}

std::optional<ArrangementStep> ArrangementHistory::undo()
{
    if (_doneCount == 0) {
        return std::nullopt;
    }
    return _steps[--_doneCount];
}

std::optional<ArrangementStep> ArrangementHistory::redo()
{
    if (_doneCount == _steps.size()) {
        return std::nullopt;
    }
    return _steps[_doneCount++];
}
