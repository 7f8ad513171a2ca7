#include "platform/freedesktop/pictures/PictureFormat.h"

#include <QBuffer>
#include <QImageReader>
#include <QtEndian>

#include <algorithm>
#include <array>
#include <climits>

namespace {

struct Mark
{
    const char *format;
    QByteArrayView bytes;
};
constexpr std::array<Mark, 7> marks { { { "png", { "\x89PNG\r\n\x1a\n", 8 } },
    { "jpeg", { "\xff\xd8\xff", 3 } }, { "gif", { "GIF8", 4 } }, { "webp", { "RIFF", 4 } },
    { "xpm", { "/* XPM", 6 } }, { "ico", { "\0\0\1\0", 4 } }, { "icns", { "icns", 4 } } } };

// Where the head of a PNG picture says how large it is, and how many bits a sample has.
constexpr qsizetype pngWidthAt = 16;
constexpr qsizetype pngDepthAt = 24;

// Before each scan of a JPEG picture, and nowhere in its data.
constexpr QByteArrayView startOfScan("\xff\xda", 2);
constexpr int mostScans = 60;

} // namespace

QByteArray pictureFormat(QByteArrayView bytes)
{
    const auto mark = std::find_if(marks.begin(), marks.end(),
        [bytes](const Mark &known) { return bytes.startsWith(known.bytes); });
    if (mark == marks.end()) {
        return {};
    }
    // Sounds and films begin alike.
    const bool isOtherMedium = mark->bytes.front() == 'R' && bytes.indexOf("WEBP") != 8;
    return isOtherMedium ? QByteArray() : QByteArray(mark->format);
}

// The size in the head of a PNG picture. Qt's reader would read everything before the pixels.
QSize sizeOfPng(QByteArrayView png)
{
    if (png.size() <= pngDepthAt) {
        return {};
    }
    const auto width = qFromBigEndian<quint32>(png.data() + pngWidthAt);
    const auto height = qFromBigEndian<quint32>(png.data() + pngWidthAt + 4);
    return std::max(width, height) <= INT_MAX ? QSize(int(width), int(height)) : QSize();
}

bool hasTooManyScans(QByteArrayView jpeg)
{
    int scans = 0;
    for (qsizetype at = jpeg.indexOf(startOfScan); at >= 0;
         at = jpeg.indexOf(startOfScan, at + 2)) {
        ++scans;
    }
    return scans > mostScans;
}

qint64 decodedBytes(const QByteArray &bytes, const QByteArray &format)
{
    const bool isPng = format == "png";
    QBuffer buffer;
    buffer.setData(bytes);
    const QSize size = isPng ? sizeOfPng(bytes) : QImageReader(&buffer, format).size();
    // Samples of 16 bits take twice the space, and so do decoders that keep a copy of their own.
    const bool isSmall = isPng ? size.isValid() && bytes[pngDepthAt] <= 8 : format == "xpm";
    return size.isValid() ? qint64(size.width()) * size.height() * (isSmall ? 4 : 8) : -1;
}
