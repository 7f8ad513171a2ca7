#include "shell/selector/StatsButtons.h"

#include "catalogue/OTAppManager.h"

#include <algorithm>

namespace {

enum Index { Total, Included, Excluded, Favorite, Running };

} // namespace

StatsButtons::StatsButtons()
{
    _buttons[Total].group = AllGroup;
    _buttons[Included].group = IncludedGroup;
    _buttons[Excluded].group = ExcludedGroup;
    _buttons[Favorite].group = UserGroup;
    _buttons[Running].group = RunningGroup;
    writeLabels();
}

int StatsButtons::groupForGroup(int group)
{
    switch (group) {
    case RunningGroup:
        return RunningGroup;
    case IncludedGroup:
    case Included1DGroup:
        return IncludedGroup;
    case AllGroup:
    case All1DGroup:
        return AllGroup;
    case UserGroup:
    case User1DGroup:
        return UserGroup;
    default:
        return group < 0 ? -1 : ExcludedGroup;
    }
}

qint64 StatsButtons::countFromCatalogue(OTAppManager &appManager, int index)
{
    switch (index) {
    case Total:
        return appManager.allApps1D().size();
    case Included:
        return appManager.includedApps1D().size();
    case Excluded:
        return appManager.excludedApps1D().size();
    case Favorite:
        return appManager.userApps1D().size();
    default:
        return appManager.runningApps().size();
    }
}

const StatsButtons::Button &StatsButtons::at(int index) const
{
    return _buttons[size_t(std::clamp(index, 0, Count - 1))];
}

bool StatsButtons::setCount(qint64 count, int forButtonAtIndex)
{
    const int index = std::clamp(forButtonAtIndex, 0, Count - 1);
    if (_buttons[size_t(index)].count == count) {
        return false;
    }
    _buttons[size_t(index)].count = count;
    writeLabels(index);
    return true;
}

bool StatsButtons::isEnabled(int index) const
{
    switch (std::clamp(index, 0, Count - 1)) {
    case Total:
    case Excluded:
        return _buttons[Excluded].count > 0;
    case Favorite:
        return _buttons[Favorite].count > 0;
    default:
        return true;
    }
}

void StatsButtons::writeLabels()
{
    for (int i = 0; i < Count; ++i) {
        writeLabels(i);
    }
}

void StatsButtons::writeLabels(int index)
{
    Button &button = _buttons[size_t(index)];
    const QString count = QString::number(button.count);
    switch (index) {
    case Total:
        button.labels = { tr("%1 Total").arg(count), tr("%1 T").arg(count), tr("T") };
        break;
    case Included:
        button.labels = { tr("%1 Included").arg(count), tr("%1 I").arg(count), tr("I") };
        break;
    case Excluded:
        button.labels = { tr("%1 Excluded").arg(count), tr("%1 E").arg(count), tr("E") };
        break;
    case Favorite:
        button.labels = { tr("%n Favorite", nullptr, int(button.count)), tr("%1 F").arg(count),
            tr("F") };
        break;
    default:
        button.labels = { tr("%1 Running").arg(count), tr("%1 R").arg(count), tr("R") };
        break;
    }
}

int StatsButtons::selectedIndex() const
{
    const auto selected = std::find_if(
        _buttons.cbegin(), _buttons.cend(), [](const Button &button) { return button.isSelected; });
    return selected == _buttons.cend() ? -1 : int(selected - _buttons.cbegin());
}

bool StatsButtons::selectGroup(int group)
{
    const int before = selectedIndex();
    for (Button &button : _buttons) {
        button.isSelected = button.group == groupForGroup(group);
    }
    return selectedIndex() != before;
}

int StatsButtons::enabledIndexFromSelected(int step) const
{
    int index = selectedIndex();
    if (index < 0 && step < 0) {
        index = 0;
    }
    do {
        index = (index + step + Count) % Count;
    } while (!isEnabled(index));
    return index;
}

bool StatsButtons::setMouseState(MouseState state, int onlyButton)
{
    bool isChanged = false;
    for (int i = 0; i < Count; ++i) {
        const MouseState wanted = i == onlyButton ? state : MouseState::None;
        MouseState &own = _buttons[size_t(i)].mouseState;
        isChanged = isChanged || own != wanted;
        own = wanted;
    }
    return isChanged;
}
