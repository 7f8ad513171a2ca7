// Shows how far the search for applications has come where the desktop lists the panel: in its task
// bar entry, and as a bar in its icon.

#pragma once

#include <QElapsedTimer>

class QWidget;
class TaskBarProgress;

class ScanProgress final
{
public:
    // Both must outlive this.
    ScanProgress(TaskBarProgress &taskBar, QWidget &window)
        : _taskBar(taskBar)
        , _window(window)
    { }

    // A step of so many. Some steps are passed over, so that the search is not slower for them.
    void show(int step, int count);
    // Gives the panel its own icon back.
    void end();

private:
    TaskBarProgress &_taskBar;
    QWidget &_window;
    // Since a step was last shown; not valid while none is.
    QElapsedTimer _lastProgress;
};
