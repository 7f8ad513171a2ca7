// Whether the desktop asks its programs to do without movement: fades, slides and the like.
//
// The base class is a desktop that does not mind.

#pragma once

class Motion
{
public:
    virtual ~Motion() = default;

    // May change at any time. Quick enough to be asked before each effect.
    virtual bool isReduced() const { return false; }
};
