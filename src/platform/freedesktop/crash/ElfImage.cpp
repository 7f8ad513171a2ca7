#include "platform/freedesktop/crash/ElfImage.h"

#include <cstring>
#include <dlfcn.h>
#include <elf.h>
#include <link.h>

// Addresses come as numbers here, from registers and from headers.
// NOLINTBEGIN(performance-no-int-to-ptr)

ElfImage ElfImage::at(std::uintptr_t address)
{
    ElfImage image;
#ifdef DLFO_STRUCT_HAS_EH_DBASE
    dl_find_object found = {};
    if (_dl_find_object(reinterpret_cast<void *>(address), &found) == 0) {
        image.path = found.dlfo_link_map->l_name;
        image.base = found.dlfo_link_map->l_addr;
        image._start = reinterpret_cast<std::uintptr_t>(found.dlfo_map_start);
    }
#else
    static_cast<void>(address);
#endif
    return image;
}

bool ElfImage::readBuildId()
{
    const auto *const header = reinterpret_cast<const ElfW(Ehdr) *>(_start);
    if (header == nullptr || std::memcmp(header->e_ident, ELFMAG, SELFMAG) != 0) {
        return false;
    }
    const auto *const segments = reinterpret_cast<const ElfW(Phdr) *>(_start + header->e_phoff);
    for (int i = 0; i < header->e_phnum; ++i) {
        if (segments[i].p_type != PT_NOTE) {
            continue;
        }
        const std::size_t alignment = segments[i].p_align == 8 ? 8 : 4;
        const auto aligned = [alignment](std::size_t size) {
            return (size + alignment - 1) / alignment * alignment;
        };
        std::uintptr_t place = base + segments[i].p_vaddr;
        const std::uintptr_t end = place + segments[i].p_memsz;
        while (place + sizeof(ElfW(Nhdr)) <= end) {
            const auto *const note = reinterpret_cast<const ElfW(Nhdr) *>(place);
            const auto *const name = reinterpret_cast<const char *>(note + 1);
            if (note->n_type == NT_GNU_BUILD_ID && note->n_namesz == sizeof(ELF_NOTE_GNU)
                && std::memcmp(name, ELF_NOTE_GNU, sizeof(ELF_NOTE_GNU)) == 0) {
                buildId = reinterpret_cast<const unsigned char *>(name) + aligned(note->n_namesz);
                buildIdLength = note->n_descsz;
                return true;
            }
            place += sizeof(*note) + aligned(note->n_namesz) + aligned(note->n_descsz);
        }
    }
    return false;
}

// NOLINTEND(performance-no-int-to-ptr)
