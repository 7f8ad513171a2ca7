#include "platform/freedesktop/pictures/SvgGuard.h"

#include "platform/freedesktop/pictures/SvgInspection.h"
#include "platform/freedesktop/pictures/SvgMarkup.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <string_view>

namespace {

using Text = std::string_view;

// Elements that refer to others or are drawn more than once, by this renderer or a later one.
constexpr std::array<Text, 11> unusualElements { "use", "image", "feImage", "pattern", "mask",
    "marker", "filter", "symbol", "font", "text", "textArea" };
// A larger picture takes so long to draw that parsing it twice hardly counts.
constexpr size_t largestQuickLook = 64 * 1024;

// One pass over the bytes, tag by tag. It agrees with a parser up to the first thing that is not
// well-formed, and there the renderer's parser stops as well.
class QuickLook final
{
public:
    explicit QuickLook(Text text)
        : _text(text)
    { }

    // False when the picture has, or may have, something that needs the thorough look.
    bool isPlain();

private:
    bool passMarkup();
    bool passTag();
    bool passInstruction();
    // Goes on behind the next `end`; false when there is none.
    bool passTo(Text end);
    Text rest() const { return _text.substr(_at); }

    const Text _text;
    size_t _at = 0;
    int _depth = 0;
};

bool QuickLook::isPlain()
{
    // A zero byte stands in every text of a wider encoding; behind an ampersand may be any letter.
    if (_text.size() > largestQuickLook || std::memchr(_text.data(), 0, _text.size()) != nullptr
        || _text.find('&') != Text::npos || _text.find("dasharray") != Text::npos) {
        return false;
    }
    for (_at = _text.find('<'); _at != Text::npos; _at = _text.find('<', _at)) {
        ++_at;
        if (!passMarkup()) {
            return false;
        }
    }
    return true;
}

bool QuickLook::passMarkup()
{
    if (rest().starts_with('/')) {
        --_depth;
        return passTo(">");
    }
    if (rest().starts_with("!--")) {
        _at += 3;
        return passTo("-->");
    }
    if (rest().starts_with("![CDATA[")) {
        return passTo("]]>");
    }
    if (rest().starts_with('?')) {
        return passInstruction();
    }
    return !rest().starts_with('!') && ++_depth <= SvgGuard::mostDepth && passTag();
}

// Only the declaration at the beginning is usual, and only one of an encoding in which markup is
// ASCII.
bool QuickLook::passInstruction()
{
    const size_t start = _at;
    if (!passTo("?>") || !_text.substr(start).starts_with("?xml ")) {
        return false;
    }
    Text declaration = _text.substr(start, _at - start);
    const size_t encoding = declaration.find("encoding");
    if (encoding == Text::npos) {
        return true;
    }
    declaration.remove_prefix(encoding);
    return declaration.find("UTF-8") != Text::npos || declaration.find("utf-8") != Text::npos;
}

bool QuickLook::passTag()
{
    const size_t nameEnd = std::min(_text.find_first_of(" \t\r\n/>", _at), _text.size());
    const Text name = _text.substr(_at, nameEnd - _at);
    const Text localName = name.substr(name.find(':') + 1);
    if (std::find(unusualElements.begin(), unusualElements.end(), localName)
        != unusualElements.end()) {
        return false;
    }
    for (_at = nameEnd; _at < _text.size(); ++_at) {
        const char c = _text[_at];
        if (c == '>') {
            _depth -= _text[_at - 1] == '/' ? 1 : 0;
            return true;
        }
        if (c == '"' || c == '\'') {
            _at = _text.find(c, _at + 1);
            if (_at == Text::npos) {
                return false;
            }
        } else if (c == 'h' && rest().starts_with("href")) {
            return false;
        }
    }
    return false;
}

bool QuickLook::passTo(Text end)
{
    const size_t found = _text.find(end, _at);
    _at = found == Text::npos ? _text.size() : found + end.size();
    return found != Text::npos;
}

// Why a length of the outermost element is none; percentages and units do not matter here.
QString refusalOfLength(QStringView text)
{
    const auto end = std::find_if(text.begin(), text.end(),
        [](QChar c) { return !c.isDigit() && QStringView(u".+-eE").indexOf(c) < 0; });
    QStringView number = text.first(end - text.begin());
    while (!number.isEmpty() && !number.back().isDigit() && number.back() != u'.') {
        number.chop(1);
    }
    bool isNumber = false;
    const double length = number.toDouble(&isNumber);
    if (!isNumber) {
        return QStringLiteral("its size is no number");
    }
    if (!(length > 0)) {
        return QStringLiteral("its size is zero");
    }
    return length > SvgGuard::largestExtent ? QStringLiteral("its size is out of range")
                                            : QString();
}

QStringList lengthsOf(const QXmlStreamAttributes &attributes)
{
    QStringList lengths;
    for (const QXmlStreamAttribute &attribute : attributes) {
        QString value = attribute.value().toString();
        if (attribute.name() == u"width" || attribute.name() == u"height") {
            lengths.append(value.trimmed());
        } else if (attribute.name() == u"viewBox") {
            // The first two are a position.
            lengths += value.replace(u',', u' ').simplified().split(u' ').mid(2);
        }
    }
    lengths.removeAll(QString());
    return lengths;
}

} // namespace

QString SvgGuard::refusal(const QByteArray &svg)
{
    if (svg.size() > mostBytes) {
        return QStringLiteral("larger than %1 bytes").arg(mostBytes);
    }
    const QString markup = SvgMarkup::refusal(svg);
    if (!markup.isEmpty()) {
        return markup;
    }
    QXmlStreamReader root(svg);
    if (!root.readNextStartElement()) {
        return root.errorString();
    }
    if (root.name() != u"svg") {
        return QStringLiteral("not an SVG picture");
    }
    const QXmlStreamAttributes attributes = root.attributes();
    if (std::any_of(attributes.begin(), attributes.end(), [](const QXmlStreamAttribute &attribute) {
            return attribute.value().size() > longestAttribute;
        })) {
        return QStringLiteral("too long an attribute");
    }
    for (const QString &length : lengthsOf(attributes)) {
        const QString why = refusalOfLength(length);
        if (!why.isEmpty()) {
            return why;
        }
    }
    const bool isPlain = QuickLook({ svg.constData(), size_t(svg.size()) }).isPlain();
    return isPlain ? QString() : SvgInspection(svg).refusal();
}
