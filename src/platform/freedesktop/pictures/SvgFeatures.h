// Tells pictures that come out wrong because Qt's renderer leaves out a part of SVG: clip paths,
// masks, filters and patterns. What should be cut off or blurred then covers the rest.
//
// Any thread.

#pragma once

#include <QByteArray>

namespace SvgFeatures {

// Whether something that is drawn uses such a part. A picture that names none of them is known
// after one look at its bytes.
bool goBeyondRenderer(const QByteArray &svg);

} // namespace SvgFeatures
