// The memory that the program takes from the others while it has nothing to do.
//
// The base class is a system that wants nothing back.

#pragma once

class Memory
{
public:
    virtual ~Memory() = default;

    // Gives back what is not used and what can be had again: to be called when there is time, since
    // it takes some milliseconds.
    virtual void giveBack() { }
};
