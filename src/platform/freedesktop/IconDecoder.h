// Turns a picture file of any kind into the pixels of an icon. The files are anybody's: size and
// kind are looked at before anything is decoded. May be called from any thread.

#pragma once

#include <QImage>
#include <QString>

// Of a file.
inline constexpr qint64 largestPictureFile = 16 * 1024 * 1024;
// Of the decoded picture.
inline constexpr qint64 mostPicturePixels = 16 * 1024 * 1024;

// The picture, scaled to fit and centred in a square of `size` pixels, ARGB32 premultiplied. Null
// and one log line when the file has none; null and silent when there is no file or no size.
QImage decodeIcon(const QString &file, int size);

// The longer edge in pixels of the picture in the file, of several the one that suits `size`. 0 for
// a drawing without pixels, and, silently, for anything else.
int storedIconSize(const QString &file, int size);
