// Whether a picture is all there. Qt's readers make a picture of whatever part of a file there is,
// and do not say so.

#pragma once

#include <QByteArrayView>

// False for a GIF, JPEG or PNG picture that is cut off, or damaged so that its end cannot be found,
// and for a JPEG picture of more scans than any program writes. The kind is told by the content;
// true for any other, whose reader notices itself. Of several pictures in a GIF only the first one
// counts. What follows the picture does not matter.
bool isWholePicture(QByteArrayView bytes);
