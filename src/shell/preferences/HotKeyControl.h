// Where the user chooses the hot key: the menu of keys, a box for each modifier, and what stands in
// the way of the key that is chosen.

#pragma once

#include <QWidget>

#include <functional>
#include <utility>
#include <vector>

class QCheckBox;
class QComboBox;
class QLabel;

// What the control asks of the program.
struct HotKeyChoice
{
    // Chooses a key by its code and the mask of its modifiers, and grabs it.
    std::function<void(int code, int modifiers)> choose;
    // Why the chosen key cannot be had; empty while it can.
    std::function<QString()> problem;
};

class HotKeyControl final : public QWidget
{
    Q_OBJECT

public:
    explicit HotKeyControl(HotKeyChoice choice, QWidget *parent = nullptr);

    // Shows the key that the preferences name.
    void takeStates();
    // Chooses the key that the program comes with.
    void reset();

private:
    void choose();

    HotKeyChoice _choice;
    QComboBox *_keys;
    // By their bits in the mask.
    std::vector<std::pair<int, QCheckBox *>> _modifiers;
    QLabel *_problem;
};
