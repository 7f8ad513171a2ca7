// The memory of this process at rest.
//
// Loading leaves behind freed memory in the pool of every thread, and the code of everything that
// was needed once: Qt's start, decoders, parsers. The code comes back from the system's cache of
// files with one fault for sixteen pages.

#pragma once

#include "platform/Memory.h"

class ProcessMemory final : public Memory
{
public:
    void giveBack() override;
};
