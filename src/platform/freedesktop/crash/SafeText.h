// Text that a signal handler writes to a file: no memory is allocated, no lock taken, no locale
// asked, and the only system call is write(2).
//
// Every line goes to the file when it is complete, so that it is there even when making the next
// one crashes. What the disk does not take is lost without a word.

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <ctime>

class SafeText final
{
public:
    constexpr SafeText() = default;

    // The descriptor stays the caller's.
    void beginFile(int descriptor);
    // Whether any byte reached the file.
    bool hasWritten() const { return _hasWritten; }

    // Null counts as empty.
    SafeText &add(const char *text);
    // Text from outside: what is not printable ASCII becomes \xHH.
    SafeText &addForeign(const char *text);
    // At least that many digits.
    SafeText &addDecimal(std::int64_t value, int digits = 1);
    // With 0x in front.
    SafeText &addAddress(std::uintptr_t value, int digits = 1);
    // Two digits a byte.
    SafeText &addBytes(const unsigned char *bytes, std::size_t count);
    // As YEAR-MONTH-DAY, the separator, and hours, minutes and seconds, in UTC.
    SafeText &addDate(std::time_t time, const char *dateEnd, const char *timeSeparator);
    void endLine();

    // What the present line holds so far, which ends with a NUL then; for names of files.
    const char *line();
    void clearLine() { _length = 0; }

private:
    void addCharacter(char character);
    void addDigits(std::uint64_t value, unsigned base, int digits);

    // A longer line is cut off.
    std::array<char, 1024> _line {};
    std::size_t _length = 0;
    int _descriptor = -1;
    bool _hasWritten = false;
};
