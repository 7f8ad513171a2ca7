#include "finding/Query.h"

#include "finding/KeyboardLayouts.h"

#include <algorithm>

namespace {

constexpr qsizetype ShortWord = 3;

bool isName(FoundBy field)
{
    return field == FoundBy::Name || field == FoundBy::UntranslatedName;
}

bool haveKeywords(FoundBy field)
{
    return field == FoundBy::Keywords || field == FoundBy::UntranslatedKeywords;
}

bool haveInitials(FoundBy field)
{
    return isName(field) || field == FoundBy::GenericName
        || field == FoundBy::UntranslatedGenericName;
}

// One letter of another script may be a word.
bool isOfAlphabet(QChar letter)
{
    switch (letter.script()) {
    case QChar::Script_Han:
    case QChar::Script_Hiragana:
    case QChar::Script_Katakana:
    case QChar::Script_Hangul:
    case QChar::Script_Bopomofo:
    case QChar::Script_Yi:
        return false;
    default:
        return !letter.isSurrogate();
    }
}

bool isBetter(const std::optional<Match> &match, const std::optional<Match> &than)
{
    return match
        && (!than
            || std::tuple(match->rank(), match->detail())
                < std::tuple(than->rank(), than->detail()));
}

void keepBetter(std::optional<Match> &best, const std::optional<Match> &match)
{
    if (isBetter(match, best)) {
        best = match;
    }
}

} // namespace

Query::Query(const QString &typed)
{
    addReading(typed, std::nullopt);
    // Nothing is as long as that, and the layouts are asked letter by letter.
    if (typed.size() <= FoldedText::longest) {
        for (const KeyboardLayouts::Reading &other : KeyboardLayouts::otherReadings(typed)) {
            addReading(other.text, other.script);
        }
    }
}

void Query::addReading(const QString &text, std::optional<QChar::Script> otherLayout)
{
    // The end of what is too long would be cut off, and find what was not meant.
    if (text.size() >= FoldedText::longest) {
        return;
    }
    const QString letters = FoldedText(text).letters();
    if (letters.isEmpty()) {
        return;
    }
    Reading reading { wordOf(letters), {}, otherLayout };
    const QStringList words = letters.split(u' ');
    if (words.size() > 1) {
        for (const QString &word : words) {
            reading.words.push_back(wordOf(word));
            reading.words.back().isAlone = false;
        }
    }
    _readings.push_back(reading);
}

Query::Word Query::wordOf(const QString &letters)
{
    const bool isAlphabetic = std::all_of(letters.cbegin(), letters.cend(), isOfAlphabet);
    return { letters, isAlphabetic && letters.size() == 1,
        isAlphabetic && letters.size() < ShortWord, true };
}

std::optional<Match> Query::match(const Findable &item) const
{
    std::optional<Match> found;
    for (const Reading &reading : _readings) {
        if (reading.otherLayout && !item.hasLettersOf(*reading.otherLayout)) {
            continue;
        }
        std::optional<Match> match = best(reading, item);
        if (!match) {
            match = bestAction(reading, item);
        }
        if (match && reading.otherLayout) {
            match->sense = Match::Sense::OtherLayout;
        }
        keepBetter(found, match);
        if (found && !reading.otherLayout) {
            break;
        }
    }
    return found;
}

std::optional<FoundAs> Query::find(const Word &word, const FoldedText &text, FoundBy field)
{
    if (word.isOneLetter && word.isAlone && !isName(field)) {
        return std::nullopt;
    }
    const QString &letters = text.letters();
    qsizetype at = letters.indexOf(word.letters);
    if (at == 0 && letters.size() == word.letters.size() && !haveKeywords(field)) {
        return FoundAs::Whole;
    }
    if (at == 0 && isName(field)) {
        return FoundAs::Beginning;
    }
    const bool isLong = word.letters.size() > 1;
    const bool areInitials = isLong && haveInitials(field) && text.haveInitials(word.letters);
    if (areInitials && isName(field)) {
        return FoundAs::Initials;
    }
    const bool isInside = at >= 0;
    bool isBeginning = false;
    for (; at >= 0; at = letters.indexOf(word.letters, at + 1)) {
        if (text.isStart(at) && isLong && text.isEnd(at + word.letters.size())) {
            return FoundAs::WholeWord;
        }
        isBeginning = isBeginning || text.isStart(at);
    }
    if (isBeginning) {
        return FoundAs::Word;
    }
    if (isInside && !word.isShort) {
        return FoundAs::Part;
    }
    if (areInitials || (isLong && isName(field) && text.haveInOrder(word.letters))) {
        return FoundAs::LettersInOrder;
    }
    return isInside && isLong && isName(field) ? std::optional(FoundAs::Pair) : std::nullopt;
}

std::optional<Match> Query::best(const Word &word, const Findable &item)
{
    std::optional<Match> found;
    for (const Findable::Text &text : item.texts()) {
        if (const std::optional<FoundAs> how = find(word, text.text, text.field)) {
            const qsizetype length = haveKeywords(text.field) ? 0 : text.text.letters().size();
            keepBetter(found, Match { Match::Sense::Application, *how, text.field, length, -1 });
        }
    }
    return found;
}

// Of several words the one that is found worst decides.
std::optional<Match> Query::best(const Reading &reading, const Findable &item)
{
    std::optional<Match> found = best(reading.whole, item);
    std::optional<Match> worst;
    for (const Word &word : reading.words) {
        const std::optional<Match> match = best(word, item);
        if (!match) {
            return found;
        }
        if (!worst || isBetter(worst, match)) {
            worst = match;
        }
    }
    keepBetter(found, worst);
    return found;
}

std::optional<Match> Query::bestAction(const Reading &reading, const Findable &item)
{
    std::optional<Match> found;
    for (size_t i = 0; i < item.actions().size(); ++i) {
        std::optional<Match> match = Query::match(reading, item, item.actions()[i]);
        if (match) {
            match->sense = Match::Sense::Action;
            match->field = FoundBy::Action;
            match->action = int(i);
            keepBetter(found, match);
        }
    }
    return found;
}

// Some of the words may be the application's, as in "firefox private".
std::optional<Match> Query::match(
    const Reading &reading, const Findable &item, const Findable::Action &action)
{
    const auto inAction = [&action](const Word &word) -> std::optional<Match> {
        const auto how =
            word.isShort && word.isAlone ? std::nullopt : find(word, action.text, FoundBy::Action);
        return how ? std::optional(Match { .how = *how, .length = action.text.letters().size() })
                   : std::nullopt;
    };
    const std::optional<Match> whole = inAction(reading.whole);
    if (whole || reading.words.empty()) {
        return whole;
    }
    std::optional<Match> worst;
    bool isOfAction = false;
    for (const Word &word : reading.words) {
        std::optional<Match> match = inAction(word);
        isOfAction = isOfAction || match;
        if (!match) {
            match = best(word, item);
        }
        if (!match) {
            return std::nullopt;
        }
        if (!worst || isBetter(worst, match)) {
            worst = match;
        }
    }
    return isOfAction ? worst : std::nullopt;
}

std::vector<Hit> ranked(const Query &query, const std::vector<Candidate> &candidates)
{
    std::vector<Hit> hits;
    for (size_t i = 0; i < candidates.size(); ++i) {
        if (const std::optional<Match> match = query.match(*candidates[i].item)) {
            hits.push_back({ i, *match });
        }
    }
    std::stable_sort(hits.begin(), hits.end(), [&](const Hit &one, const Hit &other) {
        const double oneUse = candidates[one.index].use;
        const double otherUse = candidates[other.index].use;
        // The more use the earlier.
        return std::tuple(one.match.rank(), otherUse, one.match.detail())
            < std::tuple(other.match.rank(), oneUse, other.match.detail());
    });
    return hits;
}
