// The slow change of the panel to another size, for those who have asked for movement: the grid
// is out of sight while the panel grows or shrinks, and fades in once it has its new size.

#pragma once

#include "shell/KRViewAnimation.h"

#include <QObject>
#include <QRect>

class OwnWindows;
class QWidget;

class PanelResize final : public QObject
{
    Q_OBJECT

public:
    // All must outlive it.
    PanelResize(QWidget &panel, QWidget &grid, OwnWindows &ownWindows);
    ~PanelResize() override;

    // Goes to a frame in the coordinates of windows. `seconds` is the time of the panel's change;
    // the grid takes half of that to come back.
    void start(const QRect &frame, double seconds);
    // Whether the panel is on its way to its new frame.
    bool isUnderWay() const { return _step == Step::Going; }
    // Goes to the end at once. Nothing when it does not run.
    void finish();

Q_SIGNALS:
    // The panel has its new frame, once for each start.
    void panelResized();

private:
    enum class Step { Idle, Going, Coming };

    void comeBack();
    void end();

    QWidget &_panel;
    QWidget &_grid;
    OwnWindows &_ownWindows;
    Step _step = Step::Idle;
    // The grid as it is faded.
    AnimatedView _view;
    KRViewAnimation _growth;
    KRViewAnimation _fade;
};
