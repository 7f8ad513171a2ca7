#include "platform/freedesktop/base/KeyFile.h"

#include "platform/freedesktop/base/FileState.h"

#include <algorithm>

namespace {

constexpr qint64 largestKeyFile = 4 * 1024 * 1024;
bool isBlank(char character)
{
    return character == ' ' || (character >= '\t' && character <= '\r');
}

// By hand, since most lines of an entry are read only to be passed over.
std::string_view trimmed(std::string_view text)
{
    while (!text.empty() && isBlank(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && isBlank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

} // namespace

KeyFileReader::KeyFileReader(std::string_view text)
    : _rest(text)
{
    constexpr std::string_view byteOrderMark = "\xef\xbb\xbf";
    if (_rest.substr(0, byteOrderMark.size()) == byteOrderMark) {
        _rest.remove_prefix(byteOrderMark.size());
    }
}

bool KeyFileReader::readNext()
{
    while (!_rest.empty()) {
        const size_t length = std::min(_rest.find('\n'), _rest.size());
        const std::string_view line = trimmed(_rest.substr(0, length));
        _rest.remove_prefix(std::min(length + 1, _rest.size()));
        ++_lineNumber;
        if (!line.empty() && line.front() != '#') {
            take(line);
            return true;
        }
    }
    return false;
}

void KeyFileReader::take(std::string_view line)
{
    if (line.front() == '[') {
        const bool isWhole = line.back() == ']';
        _line = isWhole ? Line::Group : Line::Other;
        _group = isWhole ? line.substr(1, line.size() - 2) : std::string_view();
        return;
    }
    const size_t equals = line.find('=');
    if (equals == 0 || equals == std::string_view::npos) {
        _line = Line::Other;
        return;
    }
    _line = Line::Pair;
    _key = trimmed(line.substr(0, equals));
    _value = trimmed(line.substr(equals + 1));
}

QByteArray readKeyFile(const QString &path)
{
    QString problem;
    return readSmallFile(path, largestKeyFile, &problem).value_or(QByteArray());
}

QString keyFileValue(const QByteArray &text, std::string_view group, std::string_view key)
{
    std::string_view found;
    KeyFileReader file({ text.constData(), size_t(text.size()) });
    while (found.empty() && file.readNext()) {
        if (file.line() == KeyFileReader::Line::Pair && file.key() == key
            && (group.empty() || file.group() == group)) {
            found = file.value();
        }
    }
    if (found.size() >= 2 && found.front() == found.back()
        && (found.front() == '"' || found.front() == '\'')) {
        found = found.substr(1, found.size() - 2);
    }
    return QString::fromUtf8(found.data(), qsizetype(found.size()));
}
