// The program and the libraries as they lie in memory: which one an address belongs to.
//
// Safe in a signal handler: the C library answers without a lock. Where it cannot (before glibc
// 2.35), no address belongs to anything.

#pragma once

#include <cstddef>
#include <cstdint>

struct ElfImage
{
    // Of the library; empty for the program itself. Null when the address is in neither.
    const char *path = nullptr;
    // What addresses in the file are to be added to.
    std::uintptr_t base = 0;
    // Identifies the build, also for separate debug information; null when there is none.
    const unsigned char *buildId = nullptr;
    std::size_t buildIdLength = 0;

    bool isFound() const { return path != nullptr; }

    static ElfImage at(std::uintptr_t address);
    // Reads the file's headers in memory, which are gone when the file was cut short. False when
    // there is no build ID.
    bool readBuildId();

private:
    std::uintptr_t _start = 0;
};
