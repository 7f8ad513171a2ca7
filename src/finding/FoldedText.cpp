#include "finding/FoldedText.h"

#include <QChar>

#include <algorithm>
#include <array>

namespace {

constexpr char16_t ListSeparator = u'\n';

struct Folding
{
    char32_t code;
    const char16_t *text;
};

// What folding by Unicode leaves apart although it is typed as the letters on the right.
constexpr std::array foldings { Folding { 0xDF, u"ss" }, Folding { 0x1E9E, u"ss" },
    Folding { 0xE6, u"ae" }, Folding { 0x153, u"oe" }, Folding { 0xF8, u"o" },
    Folding { 0x142, u"l" }, Folding { 0x111, u"d" }, Folding { 0xF0, u"d" },
    Folding { 0xFE, u"th" }, Folding { 0x127, u"h" }, Folding { 0x131, u"i" } };

constexpr char32_t FirstKatakana = 0x30A1;
constexpr char32_t LastKatakana = 0x30F6;
constexpr char32_t KatakanaToHiragana = 0x60;
// Which make another letter of a kana.
constexpr char32_t VoicedMark = 0x3099;
constexpr char32_t SemiVoicedMark = 0x309A;
constexpr char32_t Tatweel = 0x640;

bool isAccent(char32_t code)
{
    if (code < 0x300 || QChar::category(code) != QChar::Mark_NonSpacing || code == VoicedMark
        || code == SemiVoicedMark) {
        return false;
    }
    switch (QChar::script(code)) {
    case QChar::Script_Inherited:
    case QChar::Script_Latin:
    case QChar::Script_Greek:
    case QChar::Script_Cyrillic:
    case QChar::Script_Hebrew:
    case QChar::Script_Arabic:
        return true;
    default:
        return false;
    }
}

bool isIgnored(char32_t code)
{
    return isAccent(code) || code == Tatweel || QChar::category(code) == QChar::Other_Format;
}

// Marks are many at times, and putting them in order takes a time that grows with their square.
QString withoutIgnored(const QString &text)
{
    QString kept = text.left(FoldedText::longest);
    kept.removeIf([](QChar unit) { return !unit.isSurrogate() && isIgnored(unit.unicode()); });
    return kept;
}

QString foldedCase(char32_t code)
{
    code = QChar::toCaseFolded(code);
    const auto *const special = std::find_if(
        foldings.begin(), foldings.end(), [code](const Folding &one) { return one.code == code; });
    if (special != foldings.end()) {
        return QString::fromUtf16(special->text);
    }
    if (code >= FirstKatakana && code <= LastKatakana) {
        code -= KatakanaToHiragana;
    }
    return QString::fromUcs4(&code, 1);
}

// Of a character in its composed form.
QString folded(char32_t code)
{
    if (code < 0x80) {
        return QString(QChar(char16_t(QChar::toLower(code))));
    }
    if (QChar::decompositionTag(code) == QChar::NoDecomposition) {
        return foldedCase(code);
    }
    QString parts = QString::fromUcs4(&code, 1).normalized(QString::NormalizationForm_D);
    parts.removeIf([](QChar unit) { return isAccent(unit.unicode()); });
    QString result;
    for (const char32_t part : parts.normalized(QString::NormalizationForm_C).toStdU32String()) {
        result += foldedCase(part);
    }
    return result;
}

bool hasOwnScript(QChar::Script script)
{
    return script != QChar::Script_Common && script != QChar::Script_Inherited;
}

// Says of one character after the other whether a word begins with it.
class WordScan final
{
public:
    enum class Start { None, Inner, Word };

    void readSeparator() { _isApart = true; }
    Start read(char32_t code)
    {
        const QChar::Script script = QChar::script(code);
        const bool isDigit = QChar::isDigit(code);
        const bool isUpper = QChar::isUpper(code);
        Start start = Start::None;
        if (_isApart) {
            start = Start::Word;
        } else if (isDigit != _isDigit || (isUpper && !_isUpper)
            || (hasOwnScript(script) && hasOwnScript(_script) && script != _script)) {
            start = Start::Inner;
        }
        _endsCapitals = !_isApart && !isUpper && _isUpper && _capitals >= 2 && !isDigit;
        _capitals = isUpper ? (start == Start::Word ? 1 : _capitals + 1) : 0;
        _isApart = false;
        _isDigit = isDigit;
        _isUpper = isUpper;
        _script = hasOwnScript(script) || start == Start::Word ? script : _script;
        return start;
    }
    // Whether the one before the last was the last of several capitals, with which a word begins:
    // the E of "HTMLEdit".
    bool endsCapitals() const { return _endsCapitals; }

private:
    bool _isApart = true;
    bool _isDigit = false;
    bool _isUpper = false;
    bool _endsCapitals = false;
    int _capitals = 0;
    QChar::Script _script = QChar::Script_Common;
};

} // namespace

FoldedText::FoldedText(const QStringList &texts)
{
    for (const QString &text : texts) {
        if (!_letters.isEmpty() && _letters.size() < longest) {
            _letters += ListSeparator;
            _starts.push_back(false);
        }
        append(text);
    }
}

void FoldedText::append(const QString &text)
{
    WordScan scan;
    qsizetype last = -1;
    const std::u32string codes =
        withoutIgnored(text).normalized(QString::NormalizationForm_KC).toStdU32String();
    const qsizetype begin = _letters.size();
    bool isSpaceDue = false;
    for (const char32_t code : codes) {
        const bool isMark = QChar::isMark(code);
        if (!QChar::isLetterOrNumber(code) && !isMark) {
            scan.readSeparator();
            isSpaceDue = _letters.size() > begin;
            continue;
        }
        if (isIgnored(code)) {
            continue;
        }
        const WordScan::Start start = isMark ? WordScan::Start::None : scan.read(code);
        if (!isMark && scan.endsCapitals() && last >= 0) {
            addStart(last);
        }
        const QString added = folded(code);
        if (_letters.size() + added.size() + 1 > longest) {
            return;
        }
        if (isSpaceDue) {
            _letters += u' ';
            isSpaceDue = false;
        }
        const qsizetype place = _letters.size();
        _letters += added;
        _starts.resize(size_t(_letters.size()));
        if (start == WordScan::Start::Word) {
            _initials += added.left(added.front().isHighSurrogate() ? 2 : 1);
        }
        if (start != WordScan::Start::None) {
            addStart(place);
        }
        last = isMark ? last : place;
    }
}

// Starts come in the order of their places.
void FoldedText::addStart(qsizetype place)
{
    if (!_starts[size_t(place)]) {
        _starts[size_t(place)] = true;
        _innerInitials += _letters.mid(place, _letters[place].isHighSurrogate() ? 2 : 1);
    }
}

bool FoldedText::haveInOrder(const QString &letters) const
{
    if (letters.isEmpty()) {
        return false;
    }
    // The earliest start leaves most letters for the others.
    qsizetype at = _letters.indexOf(letters.front());
    while (at >= 0 && !isStart(at)) {
        at = _letters.indexOf(letters.front(), at + 1);
    }
    for (qsizetype i = 1; at >= 0 && i < letters.size(); ++i) {
        at = _letters.indexOf(letters[i], at + 1);
    }
    return at >= 0;
}
