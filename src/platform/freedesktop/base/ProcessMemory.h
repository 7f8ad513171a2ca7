// The memory of this process at rest: loading leaves behind freed memory in the pool of every
// thread.

#pragma once

#include "platform/Memory.h"

class ProcessMemory final : public Memory
{
public:
    void giveBack() override;
};
