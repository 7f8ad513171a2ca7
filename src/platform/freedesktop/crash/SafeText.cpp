#include "platform/freedesktop/crash/SafeText.h"

#include <cerrno>
#include <string_view>
#include <unistd.h>

namespace {

constexpr std::string_view DigitNames = "0123456789abcdef";
constexpr std::int64_t SecondsPerDay = 86'400;

struct CivilDate
{
    std::int64_t year;
    int month;
    int day;
};

// The Gregorian date of a day counted from 1 January 1970. The idea, to count years from March so
// that the leap day comes last, is Howard Hinnant's: "chrono-Compatible Low-Level Date Algorithms",
// https://howardhinnant.github.io/date_algorithms.html (civil_from_days).
CivilDate civilDate(std::int64_t day)
{
    constexpr std::int64_t DaysPerEra = 400 * 365 + 97;
    // From 1 March of the year 0.
    const std::int64_t shifted = day + 719'468;
    const std::int64_t era = (shifted >= 0 ? shifted : shifted - DaysPerEra + 1) / DaysPerEra;
    const std::int64_t dayOfEra = shifted - era * DaysPerEra;
    const std::int64_t yearOfEra =
        (dayOfEra - dayOfEra / 1'460 + dayOfEra / 36'524 - dayOfEra / 146'096) / 365;
    const std::int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    // From March on the lengths of five months add up to 153 days, again and again.
    const auto monthFromMarch = static_cast<int>((5 * dayOfYear + 2) / 153);
    const int month = monthFromMarch < 10 ? monthFromMarch + 3 : monthFromMarch - 9;
    return { era * 400 + yearOfEra + (month <= 2 ? 1 : 0), month,
        static_cast<int>(dayOfYear - (153 * monthFromMarch + 2) / 5) + 1 };
}

} // namespace

void SafeText::beginFile(int descriptor)
{
    _descriptor = descriptor;
    _length = 0;
    _hasWritten = false;
}

SafeText &SafeText::add(const char *text)
{
    for (; text != nullptr && *text != 0; ++text) {
        addCharacter(*text);
    }
    return *this;
}

SafeText &SafeText::addForeign(const char *text)
{
    for (; text != nullptr && *text != 0; ++text) {
        const auto byte = static_cast<unsigned char>(*text);
        if (byte >= 0x20 && byte < 0x7f) {
            addCharacter(*text);
        } else {
            add("\\x").addBytes(&byte, 1);
        }
    }
    return *this;
}

SafeText &SafeText::addDecimal(std::int64_t value, int digits)
{
    if (value < 0) {
        addCharacter('-');
    }
    const auto bits = static_cast<std::uint64_t>(value);
    addDigits(value < 0 ? ~bits + 1 : bits, 10, digits);
    return *this;
}

SafeText &SafeText::addAddress(std::uintptr_t value, int digits)
{
    add("0x");
    addDigits(value, 16, digits);
    return *this;
}

SafeText &SafeText::addBytes(const unsigned char *bytes, std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i) {
        addDigits(bytes[i], 16, 2);
    }
    return *this;
}

SafeText &SafeText::addDate(std::time_t time, const char *dateEnd, const char *timeSeparator)
{
    const std::int64_t seconds = time;
    const std::int64_t day = (seconds >= 0 ? seconds : seconds - SecondsPerDay + 1) / SecondsPerDay;
    const std::int64_t second = seconds - day * SecondsPerDay;
    const CivilDate date = civilDate(day);
    addDecimal(date.year, 4).add("-").addDecimal(date.month, 2).add("-").addDecimal(date.day, 2);
    add(dateEnd).addDecimal(second / 3'600, 2).add(timeSeparator);
    return addDecimal(second / 60 % 60, 2).add(timeSeparator).addDecimal(second % 60, 2);
}

void SafeText::endLine()
{
    _line[_length++] = '\n';
    std::size_t written = 0;
    while (written < _length) {
        const ssize_t count = ::write(_descriptor, &_line[written], _length - written);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            break;
        }
        written += static_cast<std::size_t>(count);
        _hasWritten = true;
    }
    _length = 0;
}

const char *SafeText::line()
{
    _line[_length] = 0;
    return _line.data();
}

// Leaves room for the end of the line.
void SafeText::addCharacter(char character)
{
    if (_length < _line.size() - 1) {
        _line[_length++] = character;
    }
}

void SafeText::addDigits(std::uint64_t value, unsigned base, int digits)
{
    std::array<char, 20> reversed {};
    int count = 0;
    do {
        reversed[count++] = DigitNames[value % base];
        value /= base;
    } while (value != 0);
    for (int i = count; i < digits; ++i) {
        addCharacter('0');
    }
    while (count > 0) {
        addCharacter(reversed[--count]);
    }
}
