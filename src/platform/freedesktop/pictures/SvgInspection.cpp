#include "platform/freedesktop/pictures/SvgInspection.h"

#include "platform/freedesktop/pictures/IconPng.h"
#include "platform/freedesktop/pictures/PictureFormat.h"
#include "platform/freedesktop/pictures/SvgGuard.h"

#include <algorithm>
#include <array>
#include <cmath>

// Beside the characters of its attributes: drawing the smallest shape takes as long as this many of
// a path, and so does a letter. With these the slowest picture that passes takes two or three
// seconds.
constexpr double elementWeight = 256;
constexpr double letterWeight = 256;

namespace {

// Calls back for every number in a list or a path, where signs and letters part numbers as well as
// commas.
template <typename Callback> void forEachNumber(QStringView text, Callback callback)
{
    for (qsizetype i = 0; i < text.size();) {
        const qsizetype start = i;
        bool hasDot = false;
        for (; i < text.size(); ++i) {
            const char16_t c = text[i].unicode();
            const bool isExponent =
                i > start && (c == u'e' || c == u'E') && text[i - 1].unicode() <= u'9';
            const bool isSign = (c == u'-' || c == u'+')
                && (i == start || text[i - 1] == u'e' || text[i - 1] == u'E');
            const bool isFirstDot = c == u'.' && !hasDot;
            hasDot = hasDot || c == u'.';
            if (!isSign && !isFirstDot && !isExponent && (c < u'0' || c > u'9')) {
                break;
            }
        }
        bool isNumber = false;
        const double number = i > start ? text.sliced(start, i - start).toDouble(&isNumber) : 0;
        if (isNumber) {
            callback(number);
        }
        i = std::max(i, start + 1);
    }
}

// A generous estimate of the length of all outlines together, in the picture's units.
double outlineOf(const QByteArray &svg)
{
    static constexpr std::array<QStringView, 15> lengths { u"d", u"points", u"x", u"y", u"x1",
        u"y1", u"x2", u"y2", u"width", u"height", u"r", u"rx", u"ry", u"cx", u"cy" };
    double outline = 0;
    QXmlStreamReader xml(svg);
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement) {
            continue;
        }
        const QXmlStreamAttributes attributes = xml.attributes();
        for (const QXmlStreamAttribute &attribute : attributes) {
            if (std::find(lengths.begin(), lengths.end(), attribute.name()) != lengths.end()) {
                // Each number is at most one step away from zero and back.
                forEachNumber(attribute.value(),
                    [&outline](double number) { outline += 2 * std::abs(number); });
            }
        }
    }
    return outline;
}

// Why an embedded picture must not be decoded; empty when it may. The renderer decodes all of it.
QString refusalOfEmbedded(const QByteArray &data, const QByteArray &format)
{
    // The formats whose reader cannot in turn be sent anywhere.
    static const QByteArrayList harmless { "png", "jpeg", "gif", "webp" };
    if (!harmless.contains(format)) {
        return QStringLiteral("embeds a file of another kind");
    }
    if (format == "png" && !isWholePng(data)) {
        return QStringLiteral("embeds a damaged picture");
    }
    if (format == "jpeg" && hasTooManyScans(data)) {
        return QStringLiteral("embeds a picture of too many scans");
    }
    return format == "png" && unpackedTexts(data) > SvgGuard::mostEmbeddedTexts
        ? QStringLiteral("embeds a picture with too much text")
        : QString();
}

bool isBase64(QStringView text)
{
    return std::all_of(text.begin(), text.end(), [](QChar c) {
        return c.unicode() < 128
            && (c.isLetterOrNumber() || c.isSpace() || c == u'+' || c == u'/' || c == u'=');
    });
}

} // namespace

SvgInspection::SvgInspection(const QByteArray &svg)
    : _svg(svg)
    , _xml(svg)
{ }

void SvgInspection::refuse(const QString &why)
{
    if (_refusal.isEmpty()) {
        _refusal = why;
    }
}

QString SvgInspection::refusal()
{
    while (!_xml.atEnd() && _refusal.isEmpty()) {
        switch (_xml.readNext()) {
        case QXmlStreamReader::StartElement:
            startElement();
            break;
        case QXmlStreamReader::EndElement:
            _isInStyle = false;
            _openTexts -= _xml.name().startsWith(u"text") ? 1 : 0;
            _open.pop_back();
            break;
        case QXmlStreamReader::Characters:
            inspectText();
            break;
        case QXmlStreamReader::ProcessingInstruction:
            // The renderer would read the style sheet from any file named here.
            if (_xml.processingInstructionTarget() == u"xml-stylesheet") {
                refuse(QStringLiteral("refers to a style sheet"));
            }
            break;
        default:
            break;
        }
    }
    if (_xml.hasError()) {
        refuse(_xml.errorString());
    }
    return _refusal.isEmpty() ? refusalOfTotals() : _refusal;
}

QString SvgInspection::refusalOfTotals()
{
    if (_elements * _styleRules > SvgGuard::mostStyleTrials) {
        return QStringLiteral("too many style rules");
    }
    if (_shortestDashes > 0 && outlineOf(_svg) / _shortestDashes > SvgGuard::mostDashes) {
        return QStringLiteral("too many dashes");
    }
    return _references.refusal(SvgGuard::mostDepth, SvgGuard::mostExpanded);
}

void SvgInspection::startElement()
{
    if (_open.size() >= size_t(SvgGuard::mostDepth)) {
        refuse(QStringLiteral("nested too deeply"));
        return;
    }
    _elements += 1;
    if (_elements * elementWeight > SvgGuard::mostExpanded) {
        refuse(QStringLiteral("too much to draw"));
        return;
    }
    const QStringView tag = _xml.name();
    const int element = _references.addElement(_open.empty() ? -1 : _open.back());
    _open.push_back(element);
    _openTexts += tag.startsWith(u"text") ? 1 : 0;
    _isInStyle = tag == u"style";
    _references.addWeight(element, elementWeight);
    if (tag == u"font") {
        // Its letters are drawn outline by outline, as often as a text has them.
        refuse(QStringLiteral("brings a font"));
    }
    const QXmlStreamAttributes attributes = _xml.attributes();
    for (const QXmlStreamAttribute &attribute : attributes) {
        inspectAttribute(element, tag, attribute);
    }
}

void SvgInspection::inspectAttribute(
    int element, QStringView tag, const QXmlStreamAttribute &attribute)
{
    const QStringView name = attribute.name();
    const QStringView value = attribute.value();
    const bool isImage = tag == u"image" || tag == u"feImage";
    if (name == u"href" && isImage && !value.startsWith(u'#')) {
        inspectEmbedded(value);
        return;
    }
    if (value.size() > SvgGuard::longestAttribute && name != u"d" && name != u"points") {
        refuse(QStringLiteral("too long an attribute"));
        return;
    }
    _references.addWeight(element, double(value.size()));
    if (name == u"id") {
        _references.addId(element, value.toString());
    } else if (name == u"href" && tag != u"a") {
        const qsizetype hash = value.indexOf(u'#');
        if (hash >= 0) {
            _references.addReference(element, value.sliced(hash + 1).trimmed().toString());
        }
    }
    for (qsizetype at = value.indexOf(u"url("); at >= 0; at = value.indexOf(u"url(", at)) {
        const qsizetype end = value.indexOf(u')', at);
        if (end < 0) {
            break;
        }
        const QStringView target = value.sliced(at, end - at);
        const qsizetype hash = target.indexOf(u'#');
        if (hash >= 0) {
            QString id = target.sliced(hash + 1).trimmed().toString();
            _references.addReference(element, id.remove(u'"').remove(u'\''));
        }
        at = end;
    }
    if (name == u"stroke-dasharray") {
        noteDashes(value);
    } else if (const qsizetype at = value.indexOf(u"dasharray"); at >= 0) {
        noteDashes(value.sliced(at));
    }
}

// Whatever is no embedded picture would be read as the name of a file.
void SvgInspection::inspectEmbedded(QStringView reference)
{
    const qsizetype comma = reference.indexOf(u',');
    if (reference.trimmed().isEmpty()) {
        return;
    }
    if (!reference.startsWith(u"data:") || comma < 0 || !reference.first(comma).endsWith(u";base64")
        || !isBase64(reference.sliced(comma + 1))) {
        refuse(QStringLiteral("refers to another file"));
        return;
    }
    const QByteArray data = QByteArray::fromBase64(reference.sliced(comma + 1).toLatin1());
    const QByteArray format = pictureFormat(data);
    const QString why = refusalOfEmbedded(data, format);
    if (!why.isEmpty()) {
        refuse(why);
        return;
    }
    _embeddedBytes += decodedBytes(data, format);
    if (_embeddedBytes > SvgGuard::mostEmbeddedBytes) {
        refuse(QStringLiteral("embeds too large a picture"));
    }
}

void SvgInspection::inspectText()
{
    const QStringView text = _xml.text();
    if (_open.empty()) {
        return;
    }
    if (_openTexts > 0) {
        _references.addWeight(_open.back(), letterWeight * double(text.size()));
        return;
    }
    _styleLength += _isInStyle ? text.size() : 0;
    if (_styleLength > SvgGuard::longestStyle) {
        refuse(QStringLiteral("too long a style sheet"));
        return;
    }
    _styleRules += double(text.count(u'{'));
    for (qsizetype at = text.indexOf(u"dasharray"); at >= 0;) {
        const qsizetype next = text.indexOf(u"dasharray", at + 9);
        noteDashes(next < 0 ? text.sliced(at) : text.sliced(at, next - at));
        at = next;
    }
}

// `text` holds a dash pattern up to the end of its declaration.
void SvgInspection::noteDashes(QStringView text)
{
    const auto end =
        std::find_if(text.begin(), text.end(), [](QChar c) { return c == u';' || c == u'}'; });
    double sum = 0;
    forEachNumber(
        text.first(end - text.begin()), [&sum](double number) { sum += std::abs(number); });
    if (sum > 0) {
        _shortestDashes = _shortestDashes > 0 ? std::min(_shortestDashes, sum) : sum;
    }
}
