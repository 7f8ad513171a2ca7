// Reads the system's own text files line by line in a signal handler: without memory, by open(2)
// and read(2). A line of more than 8 KB is passed over.

#pragma once

#include <array>
#include <cstddef>

class SafeLines final
{
public:
    constexpr SafeLines() = default;

    // A file that cannot be read has no lines.
    void open(const char *path);
    // Without its line break. Valid until the next call, and the caller may write into it; null at
    // the end, where the file is closed.
    char *next();

private:
    std::array<char, 8192> _buffer {};
    std::size_t _begin = 0;
    std::size_t _end = 0;
    int _descriptor = -1;
};
