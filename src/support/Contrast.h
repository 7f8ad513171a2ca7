// How well colours can be told from one another, and what has to lie behind a text for it to be
// read.
//
// Contrasts are ratios from 1 to 21, as the guidelines for accessible pages (WCAG 2) define them. A
// window may let the desktop shine through, which can have any colour: what is said of a backdrop
// holds for all of them.

#pragma once

#include <QColor>

namespace Contrast {

// What a text needs to be read.
inline constexpr double Enough = 4.5;

// What a colour looks like above an opaque one.
QColor blended(const QColor &above, const QColor &below);

// Of two opaque colours.
double ratio(const QColor &one, const QColor &other);

} // namespace Contrast

// What lies behind a text: layers above a desktop of any colour.
class Backdrop final
{
public:
    // The desktop alone.
    Backdrop() = default;

    // With one more layer on top; the colour's own opacity counts.
    Backdrop with(const QColor &layer) const;

    // The contrast of a text on it in the worst case. The text is black or white, and may be
    // translucent.
    double contrast(const QColor &text) const;
    bool carries(const QColor &text) const;

    // The layer, made just so much more opaque that the text can be read on it; as it is where that
    // does. The text contrasts with the layer's colour.
    QColor strengthened(const QColor &layer, const QColor &text) const;

private:
    // Over a black desktop and over a white one.
    QColor _darkest = Qt::black;
    QColor _lightest = Qt::white;
};
