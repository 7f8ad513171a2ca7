// Pictures in the one format in which icons are kept and measured.

#pragma once

#include <QImage>

// The picture with 8 bits a sample and its colours multiplied by alpha, rounded to nearest; a
// picture of that format as it is. Qt's own conversion rounds some values down, and not the same
// ones in every column.
QImage premultipliedImage(QImage image);
