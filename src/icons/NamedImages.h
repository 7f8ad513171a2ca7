// The pictures that come with the program and stand where an icon is not there. Read once; main
// thread.

#pragma once

#include <QImage>

namespace NamedImages {

// A small placeholder, shown until the real icon has arrived.
const QImage &dot();
// Stands for a bundle that has no icon.
const QImage &notfound();

} // namespace NamedImages
