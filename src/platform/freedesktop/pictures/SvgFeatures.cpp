#include "platform/freedesktop/pictures/SvgFeatures.h"

#include <QHash>
#include <QRectF>
#include <QString>
#include <QXmlStreamReader>

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>
#include <vector>

namespace {

// Elements that are drawn only where others refer to them.
constexpr std::array<QStringView, 7> definitions { u"defs", u"clipPath", u"mask", u"filter",
    u"pattern", u"marker", u"symbol" };

struct Use
{
    QStringView property;
    QStringView definition;
};
// What the renderer ignores, by where it is asked for and what it is then.
constexpr std::array<Use, 5> ignoredUses { { { u"clip-path", u"clipPath" }, { u"mask", u"mask" },
    { u"filter", u"filter" }, { u"fill", u"pattern" }, { u"stroke", u"pattern" } } };

bool namesAny(const QByteArray &svg)
{
    const std::string_view text(svg.constData(), size_t(svg.size()));
    // In a wider encoding the names look different.
    return std::memchr(text.data(), 0, text.size()) != nullptr
        || text.find("<clipPath") != std::string_view::npos
        || text.find("<filter") != std::string_view::npos
        || text.find("<mask") != std::string_view::npos
        || text.find("<pattern") != std::string_view::npos;
}

double numberOf(const QXmlStreamAttributes &attributes, QLatin1String name)
{
    const QStringView value = attributes.value(name);
    const auto end = std::find_if(value.begin(), value.end(),
        [](QChar c) { return !c.isDigit() && QStringView(u"+-.eE").indexOf(c) < 0; });
    return value.first(end - value.begin()).toDouble();
}

QRectF rectOf(const QXmlStreamAttributes &attributes)
{
    return { numberOf(attributes, QLatin1String("x")), numberOf(attributes, QLatin1String("y")),
        numberOf(attributes, QLatin1String("width")),
        numberOf(attributes, QLatin1String("height")) };
}

// The rectangle of a path that is one, drawn from corner to corner; empty for any other path.
QRectF rectOfPath(QStringView path)
{
    constexpr qsizetype longestRect = 1'000;
    if (path.size() > longestRect) {
        return {};
    }
    std::vector<double> numbers;
    QString rest = path.toString();
    for (const QChar command : { u'M', u'L', u'Z', u',' }) {
        rest.replace(command, u' ');
    }
    const QStringList parts = rest.simplified().split(u' ');
    for (const QString &part : parts) {
        bool isNumber = false;
        numbers.push_back(part.toDouble(&isNumber));
        if (!isNumber) {
            return {};
        }
    }
    constexpr size_t corners = 4;
    if (numbers.size() < 2 * corners || numbers.size() % 2 != 0) {
        return {};
    }
    QRectF bounds(numbers[0], numbers[1], 0, 0);
    for (size_t i = 0; i < numbers.size(); i += 2) {
        // From one corner to the next only one of the two changes.
        if (i > 0 && numbers[i] != numbers[i - 2] && numbers[i + 1] != numbers[i - 1]) {
            return {};
        }
        bounds |= QRectF(numbers[i], numbers[i + 1], 1e-9, 1e-9);
    }
    return bounds;
}

// One pass over the elements of a picture.
class Search final
{
public:
    explicit Search(const QByteArray &svg)
        : _xml(svg)
    { }

    bool finds();

private:
    struct Definition
    {
        QString element;
        // Of a clip path: it consists of one rectangle that holds nearly the whole picture.
        bool cutsNothing = false;
    };
    struct Reference
    {
        QString id;
        QStringView definition;
    };

    void startElement();
    void noteProperty(QStringView name, QStringView value);
    void noteClip(const QXmlStreamAttributes &attributes);
    bool isHarmful(const Reference &reference) const;

    QXmlStreamReader _xml;
    QRectF _picture;
    // Open elements, and how many of them are not drawn.
    int _depth = 0;
    int _hiddenFrom = 0;
    // The open clip path, empty outside.
    QString _clip;
    int _clipDepth = 0;
    int _clipShapes = 0;
    QHash<QString, Definition> _definitions;
    std::vector<Reference> _references;
};

bool Search::finds()
{
    while (!_xml.atEnd()) {
        switch (_xml.readNext()) {
        case QXmlStreamReader::StartElement:
            ++_depth;
            startElement();
            break;
        case QXmlStreamReader::EndElement:
            _hiddenFrom = _depth == _hiddenFrom ? 0 : _hiddenFrom;
            if (_depth == _clipDepth) {
                _clip.clear();
                _clipDepth = 0;
            }
            --_depth;
            break;
        default:
            break;
        }
    }
    return std::any_of(_references.begin(), _references.end(),
        [this](const Reference &reference) { return isHarmful(reference); });
}

bool Search::isHarmful(const Reference &reference) const
{
    const auto found = _definitions.constFind(reference.id);
    return found != _definitions.cend() && found->element == reference.definition
        && !found->cutsNothing;
}

void Search::startElement()
{
    const QXmlStreamAttributes attributes = _xml.attributes();
    const QStringView tag = _xml.name();
    const QString id = attributes.value(QLatin1String("id")).toString();
    if (_depth == 1) {
        const QStringList box = attributes.value(QLatin1String("viewBox"))
                                    .toString()
                                    .replace(u',', u' ')
                                    .simplified()
                                    .split(u' ');
        _picture = box.size() == 4
            ? QRectF(box[0].toDouble(), box[1].toDouble(), box[2].toDouble(), box[3].toDouble())
            : rectOf(attributes);
    }
    if (_clipDepth > 0) {
        noteClip(attributes);
    } else if (tag == u"clipPath") {
        _clip = id;
        _clipDepth = _depth;
        _clipShapes = attributes.hasAttribute(QLatin1String("transform")) ? 1 : 0;
    }
    if (!id.isEmpty()) {
        _definitions.insert(id, { tag.toString(), false });
    }
    if (_hiddenFrom == 0
        && std::find(definitions.begin(), definitions.end(), tag) != definitions.end()) {
        _hiddenFrom = _depth;
    }
    for (const QXmlStreamAttribute &attribute : attributes) {
        if (attribute.name() != u"style") {
            noteProperty(attribute.name(), attribute.value());
            continue;
        }
        for (const QStringView declaration : attribute.value().split(u';')) {
            const qsizetype colon = declaration.indexOf(u':');
            if (colon > 0) {
                noteProperty(
                    declaration.first(colon).trimmed(), declaration.sliced(colon + 1).trimmed());
            }
        }
    }
}

void Search::noteProperty(QStringView name, QStringView value)
{
    if (_hiddenFrom > 0) {
        return;
    }
    if (name == u"display" && value == u"none") {
        _hiddenFrom = _depth;
        return;
    }
    const auto *const use = std::find_if(ignoredUses.begin(), ignoredUses.end(),
        [name](const Use &known) { return known.property == name; });
    const qsizetype hash = value.indexOf(u'#');
    const qsizetype end = value.indexOf(u')');
    if (use != ignoredUses.end() && value.startsWith(u"url(") && hash > 0 && end > hash) {
        QString id = value.sliced(hash + 1, end - hash - 1).trimmed().toString();
        _references.push_back({ id.remove(u'"').remove(u'\''), use->definition });
    }
}

// Some programs clip every picture to its own edges, give or take a little.
void Search::noteClip(const QXmlStreamAttributes &attributes)
{
    constexpr double tolerance = 0.01;
    const bool isPlain = ++_clipShapes == 1 && !attributes.hasAttribute(QLatin1String("transform"))
        && !attributes.hasAttribute(QLatin1String("rx"));
    const QRectF rect = _xml.name() == u"rect" ? rectOf(attributes)
                                               : rectOfPath(attributes.value(QLatin1String("d")));
    const QSizeF give = _picture.size() * tolerance;
    if (const auto clip = _definitions.find(_clip); clip != _definitions.end()) {
        clip->cutsNothing = isPlain
            && rect.adjusted(-give.width(), -give.height(), give.width(), give.height())
                   .contains(_picture);
    }
}

} // namespace

bool SvgFeatures::goBeyondRenderer(const QByteArray &svg)
{
    return namesAny(svg) && Search(svg).finds();
}
