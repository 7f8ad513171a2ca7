// Where the user chooses the hot key: the menu of keys and a box for each modifier, or the key
// itself by pressing it, and what stands in the way of the key that is chosen.

#pragma once

#include <QStringList>
#include <QWidget>

#include <functional>
#include <utility>
#include <vector>

class QCheckBox;
class QComboBox;
class QHBoxLayout;
class QLabel;

// What the control asks of the program.
struct HotKeyChoice
{
    // Chooses a key by its code and the mask of its modifiers, and grabs it.
    std::function<void(int code, int modifiers)> choose;
    // Why the chosen key cannot be had; empty while it can.
    std::function<QString()> problem;
    // The names of the place of a key that is pressed, by its native scan code.
    std::function<QStringList(quint32 nativeScanCode)> namesOfKey;
    // What the user can do about the problem outside the program, as a sentence; empty for nothing.
    std::function<QString()> advice = [] { return QString(); };
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

protected:
    void showEvent(QShowEvent *event) override;

private:
    void addModifiers(QHBoxLayout &row);
    void addRecorder(QHBoxLayout &row);
    void choose();
    void showProblem();

    HotKeyChoice _choice;
    QComboBox *_keys;
    // By their bits in the mask.
    std::vector<std::pair<int, QCheckBox *>> _modifiers;
    QLabel *_problem;
};
