// Decides whether an SVG picture is safe to hand to the renderer, before that sees it.
//
// Pictures come from anywhere, and the renderer follows whatever they say: files to read,
// references that lead back to themselves or multiply, nesting without end. Most icons use none of
// that and pass after one look at their bytes; the others are parsed first. Knows nothing of the
// process around it: any thread.

#pragma once

#include <QByteArray>
#include <QString>

namespace SvgGuard {

// Of the text, decompressed.
inline constexpr qsizetype mostBytes = 8 * 1024 * 1024;
// Elements within one another, and references followed on the way.
inline constexpr int mostDepth = 200;
// The text as it would be if every reference were written out where it is used, in characters.
inline constexpr double mostExpanded = 4.0 * 1024 * 1024;
// Of an attribute other than the outline of a shape or an embedded picture, in characters.
inline constexpr qsizetype longestAttribute = 256 * 1024;
// Strokes in dashed outlines, by a generous estimate.
inline constexpr double mostDashes = 200'000;
// Of the style sheets, in characters.
inline constexpr qsizetype longestStyle = 256 * 1024;
// Style rules times elements: each is tried on each.
inline constexpr double mostStyleTrials = 1'000'000;
// Of the pictures embedded in the picture, together, decoded; and of the texts in one of them.
inline constexpr qint64 mostEmbeddedBytes = 32 * 1024 * 1024;
inline constexpr qint64 mostEmbeddedTexts = 4 * 1024 * 1024;
// Width and height, in the units of the picture.
inline constexpr double largestExtent = 1'000'000;

// Why the picture must not be rendered; empty when it may. A picture that passes may still be no
// picture.
QString refusal(const QByteArray &svg);

} // namespace SvgGuard
