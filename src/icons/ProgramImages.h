// The program's own pictures. They are drawn from vector files by the one library that is needed
// for that anyway: Qt's way to load any picture brings in every picture format there is.

#pragma once

#include <QIcon>
#include <QImage>
#include <QSize>
#include <QString>

namespace ProgramImages {

// The picture of the given name in a number of pixels; null when there is none.
QImage picture(const QString &name, const QSize &pixels);

// The picture in the sizes that desktops ask for; null when there is none.
QIcon icon(const QString &name);

} // namespace ProgramImages
