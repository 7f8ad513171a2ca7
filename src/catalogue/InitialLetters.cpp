#include "catalogue/InitialLetters.h"

namespace {

// By hand, because the C library's answers depend on the locale of the process.
bool isSpace(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}
bool isUpper(char c)
{
    return c >= 'A' && c <= 'Z';
}
bool isLower(char c)
{
    return c >= 'a' && c <= 'z';
}
bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}
bool isJoiner(char c)
{
    return c == '-' || c == '_' || c == '.';
}
char lowered(char c)
{
    return isUpper(c) ? char(c - 'A' + 'a') : c;
}

bool isVowel(char c)
{
    const char lower = lowered(c);
    return lower == 'a' || lower == 'e' || lower == 'i' || lower == 'o' || lower == 'u';
}

class LetterScan
{
public:
    void read(char c)
    {
        if (isUpper(c) || isLower(c)) {
            readLetter(c);
            _capitalRun = isUpper(c) ? _capitalRun + 1 : 0;
            _atWordStart = false;
        } else {
            if (isDigit(c)) {
                record(c);
            }
            _capitalRun = 0;
            _atWordStart = isSpace(c) || isJoiner(c);
        }
        _previous = c;
    }

    const QByteArray &letters() const { return _letters; }

private:
    void readLetter(char c)
    {
        if (_atWordStart || (isUpper(c) && _capitalRun == 0)) {
            record(c);
        } else if (isLower(c) && _capitalRun >= 2) {
            // The block of capitals ends here. Where either neighbour is a vowel the last capital
            // begins the word (HTMLEdit); between two consonants the block itself is the word's
            // head (MPlayer).
            record(isVowel(c) || isVowel(_previous) ? _previous : c);
        }
    }

    void record(char c)
    {
        const char lower = lowered(c);
        if (!_letters.contains(lower)) {
            _letters.append(lower);
        }
    }

    QByteArray _letters;
    bool _atWordStart = true;
    int _capitalRun = 0;
    char _previous = 0;
};

} // namespace

QByteArray initialLetters(const QString &name)
{
    LetterScan scan;
    const QByteArray bytes = name.toUtf8();
    for (const char c : bytes) {
        scan.read(c);
    }
    return scan.letters();
}
