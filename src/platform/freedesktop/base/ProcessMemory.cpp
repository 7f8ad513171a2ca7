#include "platform/freedesktop/base/ProcessMemory.h"

#include <link.h>
#include <sys/mman.h>
#include <unistd.h>

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace {

// Only segments of code: what the linker has written to, and protected afterwards, lies elsewhere,
// and would be lost.
int forgetCode(dl_phdr_info *object, size_t, void *)
{
    const auto page = ElfW(Addr)(::sysconf(_SC_PAGESIZE));
    for (int i = 0; i < object->dlpi_phnum; ++i) {
        const ElfW(Phdr) &segment = object->dlpi_phdr[i];
        const bool isCode = segment.p_type == PT_LOAD && (segment.p_flags & PF_X) != 0
            && (segment.p_flags & PF_W) == 0;
        // The kernel's own object has no file to come back from.
        if (!isCode || object->dlpi_name == nullptr || object->dlpi_addr == 0) {
            continue;
        }
        const ElfW(Addr) start = (object->dlpi_addr + segment.p_vaddr) & ~(page - 1);
        const ElfW(Addr) end = object->dlpi_addr + segment.p_vaddr + segment.p_memsz;
        ::madvise(reinterpret_cast<void *>(start), end - start, MADV_DONTNEED);
    }
    return 0;
}

} // namespace

void ProcessMemory::giveBack()
{
#ifdef __GLIBC__
    ::malloc_trim(0);
#endif
    ::dl_iterate_phdr(forgetCode, nullptr);
}
