// A picture of the colours of an icon, for judging why it stands where it stands.

#pragma once

#include "icons/ColorKey.h"

#include <QImage>

// A ring of the primary colour round a pie of the others, each slice as wide as its colour's share,
// the first one upwards and the rest counter-clockwise. `size` pixels square; null without colours
// or size.
QImage spectrumIcon(const SortedColors &colors, int size);
