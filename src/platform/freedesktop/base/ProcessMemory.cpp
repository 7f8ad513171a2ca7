#include "platform/freedesktop/base/ProcessMemory.h"

// Any header of the library: it says whose it is.
#include <cstdlib>

#ifdef __GLIBC__
#include <malloc.h>
#endif

void ProcessMemory::giveBack()
{
#ifdef __GLIBC__
    ::malloc_trim(0);
#endif
}
