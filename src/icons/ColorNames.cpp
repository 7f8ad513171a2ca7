#include "icons/ColorNames.h"

#include <QStringList>

#include <algorithm>
#include <array>

using Name = ColorNames::Name;
using Kind = ColorNames::Kind;

namespace {

// Of L, from which a grey is called white, and below which it is called black.
constexpr double LeastWhite = 85;
constexpr double LeastGray = 22;

// L from 0 to 100, C from 0 on, h in degrees from 0 to below 360.
LCh seen(const SortedColor &color)
{
    const HclColor measured = measuredColor(color);
    return { measured.color.L, 100 * measured.saturation, measured.hue, 1 };
}

Name nameOfGray(double lightness)
{
    if (lightness >= LeastWhite) {
        return Name::White;
    }
    return lightness < LeastGray ? Name::Black : Name::Gray;
}

// Pink is a light red, and what lies between red and purple; brown is a dark orange, or a pale one.
Name nameOfHue(const LCh &color)
{
    struct Sector
    {
        // The hue at which it ends.
        double end;
        Name name;
    };
    static constexpr std::array sectors {
        Sector { 23, Name::Red },
        Sector { 60, Name::Orange },
        Sector { 98, Name::Yellow },
        Sector { 165, Name::Green },
        Sector { 215, Name::Turquoise },
        Sector { 272, Name::Blue },
        Sector { 320, Name::Purple },
        Sector { 352, Name::Pink },
        Sector { 360, Name::Red },
    };
    const auto *const sector = std::find_if(sectors.begin(), sectors.end() - 1,
        [&color](const Sector &candidate) { return color.h < candidate.end; });
    const bool isBrownish = color.L < 50 || (color.C < 50 && color.L < 82);
    if (color.h >= 20 && color.h < 80 && isBrownish) {
        return Name::Brown;
    }
    switch (sector->name) {
    case Name::Red:
        return color.L >= 70 ? Name::Pink : Name::Red;
    case Name::Pink:
        return color.L < 45 ? Name::Purple : Name::Pink;
    // Olive.
    case Name::Yellow:
        return color.L < 55 ? Name::Green : Name::Yellow;
    default:
        return sector->name;
    }
}

// Full, they are darker than other colours.
bool isBluish(Name name)
{
    return name == Name::Blue || name == Name::Purple;
}

bool isDark(const LCh &color, Name name)
{
    return color.L < (isBluish(name) ? 28 : 40);
}

bool isLight(const LCh &color, Name name)
{
    if (name == Name::Gray || isBluish(name)) {
        return color.L >= 65;
    }
    return color.L >= 75 && color.C < 65;
}

// The name, and other words for the colour.
QStringList wordsOf(Name name)
{
    //: The name of a colour, and other words that people may type for it, parted by |
    static constexpr std::array<const char *, std::size_t(Name::Count)> words {
        QT_TRANSLATE_NOOP("ColorNames", "red"),
        QT_TRANSLATE_NOOP("ColorNames", "orange"),
        QT_TRANSLATE_NOOP("ColorNames", "yellow"),
        QT_TRANSLATE_NOOP("ColorNames", "green"),
        QT_TRANSLATE_NOOP("ColorNames", "turquoise|cyan|teal"),
        QT_TRANSLATE_NOOP("ColorNames", "blue"),
        QT_TRANSLATE_NOOP("ColorNames", "purple|violet"),
        QT_TRANSLATE_NOOP("ColorNames", "pink|magenta"),
        QT_TRANSLATE_NOOP("ColorNames", "brown"),
        QT_TRANSLATE_NOOP("ColorNames", "white"),
        QT_TRANSLATE_NOOP("ColorNames", "grey|gray"),
        QT_TRANSLATE_NOOP("ColorNames", "black"),
    };
    return ColorNames::tr(words[std::size_t(name)]).split(QLatin1Char('|'));
}

} // namespace

Name ColorNames::nameOf(const SortedColor &color, Kind kind)
{
    const LCh look = seen(color);
    return kind == Kind::Gray ? nameOfGray(look.L) : nameOfHue(look);
}

QString ColorNames::text(Name name)
{
    return wordsOf(name).constFirst();
}

QString ColorNames::description(const SortedColor &color, Kind kind)
{
    const LCh look = seen(color);
    const Name name = kind == Kind::Gray ? nameOfGray(look.L) : nameOfHue(look);
    const bool hasShades = name != Name::White && name != Name::Black && name != Name::Pink;
    if (hasShades && isDark(look, name)) {
        return tr("dark %1", "a colour").arg(text(name));
    }
    if (hasShades && isLight(look, name)) {
        return tr("light %1", "a colour").arg(text(name));
    }
    return text(name);
}

QList<Name> ColorNames::named(const QString &typed)
{
    QList<Name> names;
    if (typed.size() < LeastLetters) {
        return names;
    }
    for (int i = 0; i < int(Name::Count); ++i) {
        const QStringList words = wordsOf(Name(i));
        if (std::any_of(words.cbegin(), words.cend(), [&typed](const QString &word) {
                return word.startsWith(typed, Qt::CaseInsensitive);
            })) {
            names.append(Name(i));
        }
    }
    return names;
}
