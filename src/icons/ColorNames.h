// What colours are called, in the user's language: the few words that everybody has for them.
//
// Colours are told apart by lightness, chroma and hue as the eye sees them, so that a dark orange
// is brown and a light red is pink.

#pragma once

#include "icons/ColorKey.h"

#include <QCoreApplication>
#include <QList>
#include <QString>

class ColorNames final
{
    Q_DECLARE_TR_FUNCTIONS(ColorNames)

public:
    enum class Name {
        Red,
        Orange,
        Yellow,
        Green,
        Turquoise,
        Blue,
        Purple,
        Pink,
        Brown,
        White,
        Gray,
        Black,
        Count
    };

    // How a colour is judged: a grey has a lightness and no hue, whatever little colour it has.
    enum class Kind { Colorful, Gray };

    // How many letters a colour is recognised by when it is typed.
    static constexpr qsizetype LeastLetters = 3;

    // Of an icon with a key in the order by colour.
    static Kind kindOf(double colorSortValue)
    {
        return colorSortValue < ColorKey::FirstGray ? Kind::Colorful : Kind::Gray;
    }

    static Name nameOf(const SortedColor &color, Kind kind);
    // In small letters where the language writes it so.
    static QString text(Name name);
    // The name, with a word for a light or a dark one: "dark blue".
    static QString description(const SortedColor &color, Kind kind);

    // The colours whose name, or another word for it, begins with a text, in whatever case. None
    // for a text of less than LeastLetters.
    static QList<Name> named(const QString &typed);
};
