#include "platform/freedesktop/base/ProcessMemory.h"

#ifdef __GLIBC__
#include <malloc.h>
#endif

void ProcessMemory::giveBack()
{
#ifdef __GLIBC__
    ::malloc_trim(0);
#endif
}
