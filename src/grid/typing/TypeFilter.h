// The text that people type to narrow the grid down to the applications it matches.
//
// A machine without a clock: who drives it says what time it is. A key keeps the filter fresh for a
// second. A filter that is no longer fresh stays in force, and the next key starts a new one. It
// holds lower-case letters and digits of any script and the marks some scripts write vowels with,
// with single spaces between words.

#pragma once

#include "grid/typing/ScrollAccumulator.h"

#include <QString>

#include <functional>
#include <limits>

class TypeFilter final
{
public:
    // How long a key keeps the filter fresh, in milliseconds.
    static constexpr qint64 Freshness = 1000;

    // Keys that stand for something other than the character they type.
    enum Key : char32_t {
        Enter = 3, // of the keypad
        Return = 13,
        Delete = 127, // and Backspace
    };

    // What a key press came to.
    struct Press
    {
        // The filter is to be announced, also when it is what it was. A key that is refused may
        // still have cleared a filter that was no longer fresh.
        bool isHandled = false;
        // The only application left is to be launched; the filter is already clear.
        bool launches = false;
    };

    enum class Wheel {
        Ignored,
        Announce, // the filter is what it was, but is to be shown
        Changed
    };

    const QString &string() const { return _string; }
    bool isEmpty() const { return _string.isEmpty(); }
    // In characters; one beyond the basic plane counts as one.
    qsizetype length() const;
    bool isFresh(qint64 now) const { return now < _freshUntil; }

    // Takes the characters that a key types without modifiers. Enter and Return ask isOneLeft,
    // before anything changes, whether the filter singles out an application. Of auto-repeated keys
    // only Delete counts.
    Press press(const QString &characters, bool isRepeat, const std::function<bool()> &isOneLeft,
        qint64 now);

    // Takes text that is no single key, such as an input method's; it launches nothing. True when
    // the filter is to be announced.
    bool type(const QString &text, qint64 now);

    // Punctuation and symbols are typed too, as some letters of other keyboard layouts lie on their
    // keys. At first they are not.
    void setTakesPunctuation(bool takesPunctuation) { _takesPunctuation = takesPunctuation; }

    // The next character goes on with the filter.
    void keepFresh(qint64 now) { _freshUntil = now + Freshness; }

    // Empties the filter and forgets how far the wheel was turned; it stays as fresh as it was.
    void reset();
    // The filter is no longer fresh.
    void cancelTime() { _freshUntil = NotFresh; }
    // Clears the filter. False when there was none.
    bool cancelOperation();

    // Walks a filter of one letter through the alphabet once the wheel was turned by more than a
    // line: towards "a" for positive deltas, towards "z" for negative ones, the other way round
    // when reversed. Past either end the filter is empty. The letter is not fresh, so that the next
    // key replaces it. A turn of direction only forgets how far the wheel was turned.
    Wheel scrollVertically(double deltaY, bool isReversed);
    void forgetScroll() { _scrollAccumulatorY.clear(); }

private:
    static constexpr qint64 NotFresh = std::numeric_limits<qint64>::min();

    bool edit(char32_t character);
    void removeLast();
    QString letterAfter(int step) const;

    QString _string;
    qint64 _freshUntil = NotFresh;
    bool _takesPunctuation = false;
    ScrollAccumulator _scrollAccumulatorY;
};
