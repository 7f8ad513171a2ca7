// The slow change of the panel to another size, for those who have asked for movement: what the
// grid showed fades out while the panel grows or shrinks, and the grid fades in once the panel has
// its new size.

#pragma once

#include "shell/base/KRViewAnimation.h"

#include <QObject>
#include <QRect>

class FrameChange;
class OwnWindows;
class QWidget;

class PanelResize final : public QObject
{
    Q_OBJECT

public:
    // The grid is a child of the panel's content. All must outlive it.
    PanelResize(QWidget &panel, QWidget &grid, FrameChange &frameChange, OwnWindows &ownWindows);
    ~PanelResize() override;

    // Goes to a frame in the coordinates of windows. `seconds` is the time of the panel's change;
    // the grid takes half of that to go, and to come back. To be called before the grid is painted
    // with what it shows next.
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

    void fadeOldGrid(double seconds);
    void comeBack();
    void end();

    QWidget &_panel;
    QWidget &_grid;
    FrameChange &_frameChange;
    OwnWindows &_ownWindows;
    Step _step = Step::Idle;
    // The grid as it is faded in.
    AnimatedView _view;
    KRViewAnimation _fadeOfOldGrid;
    KRViewAnimation _growth;
    KRViewAnimation _fade;
};
