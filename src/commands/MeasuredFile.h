// What --colors finds out about one picture or application, and how it is printed.

#pragma once

#include "icons/ColorKey.h"

#include <QImage>
#include <QString>

struct MeasuredFile
{
    // As it was typed.
    QString file;
    // What an application is called, otherwise the file's name.
    QString title;
    // Why nothing else is set; empty when it was measured.
    QString error;
    QImage icon;
    HclColors colors;
    ColorKey key;
};

namespace MeasuredFiles {

// One JSON object on a line of its own; numbers with 17 significant digits, which are enough to
// tell any two of them apart.
QString jsonLine(const MeasuredFile &measured);

enum class Blocks { Colored, Absent };

// A line for people: the key, coloured blocks for a terminal as wide as each colour's share, and
// the figures.
QString textLine(const MeasuredFile &measured, Blocks blocks);

} // namespace MeasuredFiles
