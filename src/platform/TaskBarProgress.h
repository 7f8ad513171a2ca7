// The progress of a long task, shown by the desktop where it shows its running programs.
//
// The base class is a desktop that shows none.

#pragma once

class TaskBarProgress
{
public:
    virtual ~TaskBarProgress() = default;

    // `step` of `count`, both positive. What comes too soon after another call is left out.
    virtual void show(int /*step*/, int /*count*/) { }
    // Nothing is under way any more.
    virtual void end() { }
};
