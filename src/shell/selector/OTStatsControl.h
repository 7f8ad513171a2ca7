// The group selector of the panel: a row of capsules, one for each group that people choose from,
// with the number of its applications. A click on one, Tab, a swipe or a drag that rests on one
// shows its group in the grid; whatever group the grid shows, the capsule that stands for it is
// marked.
//
// The labels grow shorter as room gets scarce, and what is too wide even so is cut off. Capsules of
// groups that have nothing of their own to show are passed over by Tab; a click works always.
// Points and rectangles are the widget's own, with y growing downwards.

#pragma once

#include "shell/selector/SpringLoading.h"
#include "shell/selector/StatsButtons.h"
#include "shell/selector/StatsColors.h"
#include "shell/selector/StatsLayout.h"

#include <QPointF>
#include <QWidget>

#include <optional>

class OTAppManager;
class OTIconView;

class OTStatsControl : public QWidget
{
    Q_OBJECT

public:
    using MouseState = StatsButtons::MouseState;

    // Catalogue and grid must outlive the control. It has no extent until layOut().
    OTStatsControl(OTAppManager &appManager, OTIconView &iconView, QWidget *parent = nullptr);
    ~OTStatsControl() override;

    // Registers the preferences that only the control reads. To be called once, before anything
    // reads them.
    static void registerDefaults();

    // Stands at the left of a place in its parent, as high as that and no wider.
    void layOut(const QRect &place);
    // Of a place of the given height in which the counts are shown, as the catalogue has them now.
    // It is the same for all counts with as many digits.
    int leastWidth(int height) const;

    // Counts follow the lists in the next turn of the event loop; before a frame that must not wait
    // for it, this takes them at once.
    void takeCounts();
    // The index of a button is brought into the range of those that there are.
    void setCount(qint64 count, int forButtonAtIndex);
    bool isButtonEnabled(int index) const { return _buttons.isEnabled(index); }
    MouseState mouseState(int index) const { return _buttons.mouseState(index); }
    // As it is shown, and in its longest wording.
    const QString &displayedLabel(int index) const { return _buttons.label(index, _wording); }
    const QString &longLabel(int index) const { return _buttons.label(index, StatsButtons::Long); }
    // The whole capsule, also where it is cut off.
    QRectF buttonRect(int index) const;
    // -1 where there is no capsule.
    int indexOfButtonAt(const QPointF &point) const;

    // -1 while none is selected.
    int indexOfSelectedButton() const { return _buttons.selectedIndex(); }
    int groupForSelectedButton() const;

    // Marks the button that stands for a group of the grid.
    void selectButtonForGroup(int group);
    // Marks a button and shows its group. The next and the previous are those that are enabled,
    // from one end of the row on to the other.
    void selectButtonAtIndex(int index);
    void selectNextButton();
    void selectPreviousButton();

    // For the panel, which has the keyboard: whether the key was used.
    bool handleKeyDown(const QKeyEvent &event);

    // A drag is over a point of the control; a button that it rests on for a while is selected.
    // Nothing can be dropped here.
    void testDrag(const QPointF &point);
    void dragEnded();

    void updateColors();

Q_SIGNALS:
    // The counts have grown too long for the place, which showed them until now.
    void roomWanted();

protected:
    void paintEvent(QPaintEvent *event) override;
    void changeEvent(QEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void timerEvent(QTimerEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void enterEvent(QEnterEvent *event) override;
    void leaveEvent(QEvent *event) override;

private:
    void listDidChange(const QString &key);
    void updateCounts();
    QSizeF textSize(const QString &label, int height) const;
    void fitLabels();
    void markSelection(bool isAnother);
    void setMouseState(MouseState state, int onlyButton);
    void pointerMoved(const std::optional<QPointF> &point);
    const StatsColors::Capsule &colorsOf(int index) const;

    OTAppManager &_appManager;
    OTIconView &_iconView;
    StatsButtons _buttons;
    QRect _place;
    StatsLayout _layout;
    StatsButtons::Wording _wording = StatsButtons::Long;

    StatsColors _colors;

    // The pointer over the control, and the button it is on.
    std::optional<QPointF> _pointer;
    int _pointedIndex = -1;
    bool _isPressed = false;
    SpringLoading _springLoading;
    // Lists change several at a time; they are counted once that is over.
    QBasicTimer _countTimer;
};
