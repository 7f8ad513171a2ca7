// The picture formats that icons come in, told by content, and what decoding them costs.
//
// Qt has readers for many more, some of which can be made to take gigabytes for a file of some
// hundred bytes. No reader is ever chosen by Qt.

#pragma once

#include <QByteArray>
#include <QSize>

// "png", "jpeg", "gif", "webp", "xpm", "ico" or "icns", as Qt names them; empty for all others.
QByteArray pictureFormat(QByteArrayView bytes);

// Of the beginning of a PNG picture; invalid when it is cut off.
QSize sizeOfPng(QByteArrayView png);

// Whether a JPEG picture goes through its pixels more often than any program writes; a progressive
// one has some ten scans.
bool hasTooManyScans(QByteArrayView jpeg);

// Bytes of memory that the pixels of a PNG, JPEG, GIF, WebP or XPM picture take while they are
// decoded. Negative when the size cannot be read.
qint64 decodedBytes(const QByteArray &bytes, const QByteArray &format);
