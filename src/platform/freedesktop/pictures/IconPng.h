// What the PNG library must not see. It writes its errors to standard error, past every log filter,
// so that a picture that is cut off or damaged is refused before; and it unpacks texts of any
// length that stand beside the picture.

#pragma once

#include <QByteArray>

// Whether the bytes begin as a PNG picture does.
bool isPng(QByteArrayView bytes);

// Whether every chunk up to the last one is there with the right checksum. What lies in the chunks
// is not looked at.
bool isWholePng(QByteArrayView bytes);

// A whole PNG picture without the chunks that do not change its pixels.
QByteArray pixelsOfPng(const QByteArray &png);

// The bytes of a whole PNG picture's texts, those that are packed counted as what they can at most
// unpack to. Of a profile the PNG library unpacks one, and no more than 8 MB.
qint64 unpackedTexts(QByteArrayView png);
