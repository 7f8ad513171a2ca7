// Ordinary controls that stand for preferences: what is set with one is stored at once, and what
// changes elsewhere is shown. A preference that is fixed for this run shows its value and cannot be
// set.

#pragma once

#include <QCoreApplication>
#include <QHash>
#include <QList>
#include <QObject>
#include <QString>
#include <QVariant>

#include <functional>
#include <utility>

class ColorWell;
class QCheckBox;
class QComboBox;
class QSpinBox;
class QWidget;

class PreferenceControls final : public QObject
{
    Q_OBJECT

public:
    // What a slider covers: whole numbers, which may be degrees, or hundredths of the preference's
    // values, which are shares or seconds.
    struct Range
    {
        enum class Unit { Points, Degrees, Hundredths, Seconds };

        int least = 0;
        int most = 0;
        Unit unit = Unit::Points;
    };
    using Choices = QList<std::pair<QString, QVariant>>;

    using QObject::QObject;

    // The caller, or the layout it puts them into, owns what these make. A text's mnemonic counts.
    QCheckBox *checkBox(const QString &key, const QString &text);
    // A stored value that is none of the choices selects none.
    QComboBox *comboBox(const QString &key, const Choices &choices);
    // A slider with its value beside it. A stored value outside the range is shown as its end and
    // stays stored.
    QWidget *slider(const QString &key, const Range &range, const QString &name);
    // A field for a whole number, with arrows.
    QSpinBox *stepper(const QString &key, const Range &range);
    ColorWell *colorWell(const QString &key, const QString &title);

    // Greys out a control of which one of the preferences is fixed for this run, and says so.
    static void disableIfFixed(QWidget &control, const QStringList &keys);

    // Every preference that has a control.
    QStringList keys() const { return _refreshes.uniqueKeys(); }
    // Goes back to their defaults, and does whatever else is due then.
    void reset();
    void addReset(const std::function<void()> &action) { _resets.append(action); }
    // Is visible from now on only while hidden ones are shown, which they are not at first.
    void hide(QWidget *control);
    void setHiddenShown(bool areShown);
    // What lets the user choose in a dialog of its own closes; what was chosen stays.
    void closeChoosers();
    void addChooser(const std::function<void()> &close) { _choosers.append(close); }

private:
    // `show` takes over the value in force.
    void add(QWidget *control, const QString &key, const std::function<void()> &show);
    void refresh(const QString &key);

    QMultiHash<QString, std::function<void()>> _refreshes;
    QList<std::function<void()>> _resets;
    QList<std::function<void()>> _choosers;
    QList<QWidget *> _hidden;
    bool _isFollowing = false;
};
