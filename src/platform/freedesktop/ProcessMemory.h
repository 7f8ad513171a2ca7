// The memory of this process at rest.
//
// Loading leaves behind freed memory in the pool of every thread, the indexes of icon themes, and
// the code of everything that was needed once: the toolkit's start, decoders, parsers. All of that
// can be had again, the code from the system's cache of files with one fault for sixteen pages.

#pragma once

#include "platform/Memory.h"

class FreedesktopIcons;

class ProcessMemory final : public Memory
{
public:
    // The icons must outlive it.
    explicit ProcessMemory(const FreedesktopIcons &icons)
        : _icons(icons)
    { }

    void giveBack() override;

private:
    const FreedesktopIcons &_icons;
};
