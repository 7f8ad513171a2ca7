// The five buttons of the group selector, without their looks: which group each stands for, how
// many applications that has, what it is called, which one is selected and which one the mouse is
// on.
//
// Indexes are brought into 0 to Count - 1. What changes something says whether it did.

#pragma once

#include <QCoreApplication>
#include <QString>

#include <array>

class OTAppManager;

class StatsButtons final
{
    Q_DECLARE_TR_FUNCTIONS(StatsButtons)

public:
    static constexpr int Count = 5;

    enum class MouseState { None = 0, PressedInside = 2, Hovered = 3 };

    // From the longest to the shortest.
    enum Wording { Long, Short, Letter, WordingCount };

    // Nothing is selected, and all counts are 0.
    StatsButtons();

    // The group of the button that stands for any group of the grid; -1 for a negative number.
    static int groupForGroup(int group);
    // How many applications the catalogue has for a button.
    static qint64 countFromCatalogue(OTAppManager &appManager, int index);

    int group(int index) const { return at(index).group; }
    bool setCount(qint64 count, int forButtonAtIndex);
    // As long as nothing is excluded, all applications are those that are included: the buttons of
    // both groups that tell them apart are disabled then, and the favourites' without favourites.
    bool isEnabled(int index) const;

    const QString &label(int index, Wording wording) const { return at(index).labels[wording]; }
    // To be called when the language has changed.
    void writeLabels();

    bool isSelected(int index) const { return at(index).isSelected; }
    // The first one; -1 while there is none.
    int selectedIndex() const;
    bool selectIndex(int index) { return selectGroup(group(index)); }
    // For any group of the grid.
    bool selectGroup(int group);
    // The nearest enabled one in steps of 1 or -1 from the selected one, from one end of the row on
    // to the other.
    int enabledIndexFromSelected(int step) const;

    MouseState mouseState(int index) const { return at(index).mouseState; }
    // Gives one button a state and takes it from all others; -1 for no button.
    bool setMouseState(MouseState state, int onlyButton);

private:
    struct Button
    {
        bool isSelected = false;
        MouseState mouseState = MouseState::None;
        int group = 0;
        qint64 count = 0;
        std::array<QString, WordingCount> labels;
    };

    const Button &at(int index) const;
    void writeLabels(int index);

    std::array<Button, Count> _buttons;
};
