// Turns a picture file into the pixels of an icon: SVG, PNG, JPEG, WebP, GIF (its first picture),
// XPM, ICO and ICNS. The files come from anywhere: size, kind and what decoding will cost are
// looked at before anything is decoded, so that no file takes more than some 64 MB or a second or
// two. May be called from any thread.

#pragma once

#include <QImage>
#include <QString>

// Of a file.
inline constexpr qint64 largestPictureFile = 16 * 1024 * 1024;

// The picture, scaled to fit and centred in a square of `size` pixels, ARGB32 premultiplied. Null
// and one log line when the file has none; null and silent when there is no file or no size.
QImage decodeIcon(const QString &file, int size);

// The same, but the reason goes into `problem`; empty when there is no file or no size. With
// `largestStored` above 0 a picture with pixels of its own is not scaled unless it is larger than
// that, and the square is as large as its longer edge; of several in the file, the one that suits
// `largestStored` is taken. A drawing without pixels is drawn at `size`.
// When given, `isFlawed` receives whether the drawing comes out wrong, since it asks for more than
// the renderer can do.
QImage tryDecodeIcon(
    const QString &file, int size, int largestStored, QString *problem, bool *isFlawed = nullptr);

// The log line about a file that has no picture.
void logUnreadableIcon(const QString &file, const QString &problem);
