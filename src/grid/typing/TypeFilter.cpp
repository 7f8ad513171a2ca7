#include "grid/typing/TypeFilter.h"

#include <QList>

#include <algorithm>

namespace {

// Lines that the wheel is turned by for a letter.
constexpr float LetterThreshold = 1;

bool belongsToWord(char32_t character)
{
    return QChar::isLetter(character) || QChar::isMark(character) || QChar::isDigit(character);
}

} // namespace

qsizetype TypeFilter::length() const
{
    return std::count_if(
        _string.cbegin(), _string.cend(), [](QChar unit) { return !unit.isLowSurrogate(); });
}

TypeFilter::Press TypeFilter::press(
    const QString &characters, bool isRepeat, const std::function<bool()> &isOneLeft, qint64 now)
{
    const QList<uint> codes = characters.toUcs4();
    if (codes.size() != 1) {
        return {};
    }
    const char32_t character = codes.first();
    if (isRepeat && character != Delete) {
        return {};
    }
    const bool isEntry = character == Enter || character == Return;
    const bool launches = isEntry && isOneLeft();
    if (!isFresh(now) || launches) {
        reset();
    }
    if (!isEntry && !edit(character)) {
        return {};
    }
    keepFresh(now);
    return { true, launches };
}

bool TypeFilter::type(const QString &text, qint64 now)
{
    const QString before = _string;
    bool isTyped = false;
    for (const char32_t character : text.toStdU32String()) {
        const QString typed = QString::fromUcs4(&character, 1);
        isTyped = press(
                      typed, false, [] { return false; }, now)
                      .isHandled
            || isTyped;
    }
    return isTyped || _string != before;
}

// False for a character that no filter has.
bool TypeFilter::edit(char32_t character)
{
    if (character == Delete) {
        removeLast();
        return true;
    }
    if (character == U' ') {
        if (!isEmpty() && !_string.endsWith(QLatin1Char(' '))) {
            _string += QLatin1Char(' ');
        }
        return true;
    }
    const bool isSign = QChar::isPunct(character) || QChar::isSymbol(character);
    if (!belongsToWord(character) && !(_takesPunctuation && isSign)) {
        return false;
    }
    // Of a character that lower case would make two of (İ), names are found by the character.
    _string += QChar::fromUcs4(QChar::toLower(character));
    return true;
}

void TypeFilter::removeLast()
{
    const bool isPair = !isEmpty() && _string.back().isLowSurrogate();
    _string.chop(isPair ? 2 : 1);
}

void TypeFilter::reset()
{
    _string.clear();
    _scrollAccumulatorY.clear();
}

bool TypeFilter::cancelOperation()
{
    if (isEmpty()) {
        return false;
    }
    reset();
    return true;
}

TypeFilter::Wheel TypeFilter::scrollVertically(double deltaY, bool isReversed)
{
    if (deltaY == 0 || !_scrollAccumulatorY.add(deltaY)) {
        return Wheel::Ignored;
    }
    const int turned = _scrollAccumulatorY.takeStep(LetterThreshold);
    if (turned == 0) {
        return Wheel::Ignored;
    }
    if (length() > 1) {
        return Wheel::Announce;
    }
    _string = letterAfter(isReversed ? turned : -turned);
    cancelTime();
    return Wheel::Changed;
}

// The letter a step along the alphabet, which is entered at either end; empty past one, and next to
// what is no letter of it.
QString TypeFilter::letterAfter(int step) const
{
    if (isEmpty()) {
        return QString(QLatin1Char(step > 0 ? 'a' : 'z'));
    }
    const int code = _string.front().unicode() + step;
    return code >= 'a' && code <= 'z' ? QString(QLatin1Char(char(code))) : QString();
}
