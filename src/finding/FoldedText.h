// A text as it is compared with what people type: without case, accents and other differences that
// typing does not make, and with the places where its words begin.
//
// Case and compatibility forms are folded by Unicode, so that "ß" is "ss", full-width and
// half-width letters are the usual ones, and a ligature is its letters. Accents and vowel points of
// Latin, Greek, Cyrillic, Hebrew and Arabic go; marks by which other scripts write vowels stay.
// Katakana become Hiragana, as input methods begin with those. What is neither letter, digit nor
// mark is one space between words. Only the beginning of a long text counts, so that the cost has a
// bound.

#pragma once

#include <QString>
#include <QStringList>

#include <vector>

class FoldedText final
{
public:
    // In UTF-16 units, of the text and of what it becomes.
    static constexpr qsizetype longest = 1000;

    FoldedText() = default;
    explicit FoldedText(const QString &text) { append(text); }
    // One after the other; a line break between two, which nothing typed contains.
    explicit FoldedText(const QStringList &texts);

    const QString &letters() const { return _letters; }
    bool isEmpty() const { return _letters.isEmpty(); }

    // Whether a word begins at this place of letters(): after a space, at a capital that follows
    // none, and where another script, or digits, begin.
    bool isStart(qsizetype place) const { return _starts[size_t(place)]; }
    // Whether a word ends before this place, which may be the end.
    bool isEnd(qsizetype place) const
    {
        return place == _letters.size() || isStart(place) || !_letters[place].isLetterOrNumber();
    }
    // Whether these are the first letters of the words, from the first word on; words are what
    // spaces separate, or what capitals and scripts separate as well.
    bool haveInitials(const QString &letters) const
    {
        return _initials.startsWith(letters) || _innerInitials.startsWith(letters);
    }
    // Whether it has these letters in this order, with others between them, the first one where a
    // word begins.
    bool haveInOrder(const QString &letters) const;

private:
    void append(const QString &text);
    void addStart(qsizetype place);

    QString _letters;
    std::vector<bool> _starts;
    QString _initials;
    QString _innerInitials;
};
