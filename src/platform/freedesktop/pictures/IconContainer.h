// Files that hold one icon in several sizes: ICO and ICNS.
//
// Qt's readers for them look into every part, and hand those that are PNG files on without looking
// at their size. Here one part is taken out: the smallest one that need not be enlarged.

#pragma once

#include <QByteArray>
#include <QString>

namespace IconContainer {

// The part of an ICO file that suits a square of `size`: a PNG file, or an ICO file of one picture
// without PNG. Empty with the reason when there is none.
QByteArray partOfIco(QByteArrayView ico, int size, QString *reason);

// The same of an ICNS file: a PNG file, or an ICNS file whose parts are all of one size and of a
// kind without a head of its own.
QByteArray partOfIcns(QByteArrayView icns, int size, QString *reason);

} // namespace IconContainer
