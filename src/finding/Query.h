// What was typed, compared with applications and ranked: a value without widgets.
//
// An application is found by the whole text, or by several words of which each is found somewhere
// in it. How it is found decides first, then how much it was used, then by which of its texts, then
// the shorter text. Beginnings and initials count as such in names; other texts say what an
// application is, and it makes no difference with which word they begin: their first word is one of
// their words, and the initials of a generic name are no more than letters in order.
//
// What would find nearly everything does not count. One letter of an alphabet finds where a word
// begins, and where it is all that was typed by names alone. Texts other than names are found
// inside a word from three letters on, actions by no less. Keywords are a list, so that one which
// is typed in full is found as a word. Letters in order begin a word of a name. Two letters inside
// a word are the least: many names have them by chance, and "ff" rather stands for Firefox.

#pragma once

#include "finding/Findable.h"

#include <QChar>

#include <optional>
#include <tuple>
#include <vector>

// How a text is found, best first.
enum class FoundAs {
    Whole,
    Beginning,
    Initials, // of its words
    WholeWord,
    Word, // the beginning of one
    Part, // inside a word
    LettersInOrder,
    Pair, // two letters inside a word
};

struct Match
{
    // What the text is taken for, best first: actions count less than anything that their
    // application itself is found by, and another keyboard layout is the last resort.
    enum class Sense { Application, Action, OtherLayout };

    Sense sense = Sense::Application;
    FoundAs how = FoundAs::Whole;
    FoundBy field = FoundBy::Name;
    // Of the text that was found, in letters.
    qsizetype length = 0;
    // Place among the actions of the application, or -1.
    int action = -1;

    // Matches that are equal in these are told apart by use, and then by these.
    auto rank() const { return std::tuple(sense, how); }
    auto detail() const { return std::tuple(field, length); }
};

class Query final
{
public:
    Query() = default;
    explicit Query(const QString &typed);

    // Nothing that could be found was typed.
    bool isEmpty() const { return _readings.empty(); }
    std::optional<Match> match(const Findable &item) const;

private:
    struct Word
    {
        QString letters;
        // What it may be found by depends on how much it says, and on whether others say more.
        bool isOneLetter = false;
        bool isShort = false;
        bool isAlone = true;
    };
    struct Reading
    {
        Word whole;
        std::vector<Word> words;
        std::optional<QChar::Script> otherLayout;
    };

    void addReading(const QString &text, std::optional<QChar::Script> otherLayout);
    static Word wordOf(const QString &letters);
    static std::optional<FoundAs> find(const Word &word, const FoldedText &text, FoundBy field);
    static std::optional<Match> best(const Word &word, const Findable &item);
    static std::optional<Match> best(const Reading &reading, const Findable &item);
    static std::optional<Match> bestAction(const Reading &reading, const Findable &item);
    static std::optional<Match> match(
        const Reading &reading, const Findable &item, const Findable::Action &action);

    // As typed, then by other layouts.
    std::vector<Reading> _readings;
};

struct Candidate
{
    const Findable *item = nullptr;
    // The more the better; see UseCounts.
    double use = 0;
};

struct Hit
{
    // Among the candidates.
    size_t index = 0;
    Match match;
};

// Those that are found, best first; of equals the first one comes first.
std::vector<Hit> ranked(const Query &query, const std::vector<Candidate> &candidates);
