// A look at the bytes of an SVG picture before anything parses them: an XML parser compares every
// attribute of an element with every other one, and follows what a document declares.

#pragma once

#include <QByteArray>
#include <QString>

namespace SvgMarkup {

// Attributes times attributes of the same element, over all elements.
inline constexpr double mostComparisons = 20'000'000;
inline constexpr qsizetype mostAttributes = 200'000;
inline constexpr qsizetype mostNamespaces = 1'000;
// Drawing programs declare a dozen, and one attribute.
inline constexpr qsizetype mostEntities = 100;
// In characters, all together.
inline constexpr size_t longestAttributeLists = 500;

// Why the text must not be parsed; empty when it may. Counts too much rather than too little, and
// reads every encoding in which the letters of markup are ASCII, however wide they are.
QString refusal(const QByteArray &text);

} // namespace SvgMarkup
