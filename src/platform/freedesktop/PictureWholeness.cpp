#include "platform/freedesktop/PictureWholeness.h"

#include "platform/freedesktop/IconPng.h"

#include <QtEndian>

#include <algorithm>
#include <array>
#include <cstdlib>

namespace {

quint8 byteAt(QByteArrayView bytes, qsizetype at)
{
    return quint8(bytes[at]);
}

template <typename Number> Number littleAt(QByteArrayView bytes, qsizetype at)
{
    return qFromLittleEndian<Number>(bytes.data() + at);
}

// A BMP file: a head of its own, a head that tells its own size, masks, colours, pixels.
constexpr qsizetype bmpFileHead = 14;
constexpr std::array<quint32, 4> bmpLongHeads { 40, 64, 108, 124 };
// The short head, which Qt assumes wherever it does not know the size.
constexpr qsizetype bmpShortHead = 12;
// From this one on a head holds the masks.
constexpr quint32 bmpHeadWithMasks = 108;
constexpr quint32 bmpRle8 = 1;
constexpr quint32 bmpRle4 = 2;
constexpr quint32 bmpBitFields = 3;

bool isWholeBmp(QByteArrayView bytes)
{
    if (bytes.size() < bmpFileHead + bmpShortHead) {
        return false;
    }
    const QByteArrayView head = bytes.sliced(bmpFileHead);
    const auto headSize = littleAt<quint32>(head, 0);
    const bool isLong =
        std::find(bmpLongHeads.begin(), bmpLongHeads.end(), headSize) != bmpLongHeads.end();
    if (isLong && head.size() < qsizetype(headSize)) {
        return false;
    }
    const qint64 width = isLong ? littleAt<qint32>(head, 4) : littleAt<qint16>(head, 4);
    // Below zero when the first row is the topmost one.
    const qint64 height =
        std::abs(qint64(isLong ? littleAt<qint32>(head, 8) : littleAt<qint16>(head, 6)));
    const int bits = littleAt<quint16>(head, isLong ? 14 : 10);
    const quint32 compression = isLong ? littleAt<quint32>(head, 16) : 0;
    const quint32 colors = isLong ? littleAt<quint32>(head, 32) : 0;

    qint64 start = bmpFileHead + qint64(headSize);
    if (compression == bmpBitFields && headSize < bmpHeadWithMasks) {
        start += 12;
    }
    if (bits <= 8) {
        start += (isLong ? 4 : 3) * (colors != 0 ? qint64(colors) : 1 << bits);
    }
    // The place that the file states is not believed when something else lies there.
    const qint64 rest = bytes.size() - std::max<qint64>(start, littleAt<quint32>(bytes, 10));
    if (compression == bmpRle8 || compression == bmpRle4) {
        return littleAt<quint32>(head, 20) <= rest;
    }
    const qint64 row = (width * bits + 31) / 32 * 4;
    return rest >= 0 && (row <= 0 || height <= rest / row);
}

// A JPEG file: segments behind a marker each, and behind some of them compressed data, in which no
// marker occurs that could be mistaken. Segments are skipped as a whole: a small preview in one has
// markers of its own.
bool isWholeJpeg(QByteArrayView bytes)
{
    bool hasPixels = false;
    for (qsizetype at = 2; at < bytes.size();) {
        at = bytes.indexOf('\xff', at);
        if (at < 0 || at + 1 >= bytes.size()) {
            return false;
        }
        const quint8 marker = byteAt(bytes, at + 1);
        if (marker == 0xff) {
            // May be repeated.
            ++at;
        } else if (marker <= 0x01 || (marker >= 0xd0 && marker <= 0xd8)) {
            // Without anything behind it: part of the data, or a place to start again.
            at += 2;
        } else if (marker == 0xd9) {
            return hasPixels;
        } else if (at + 4 > bytes.size()) {
            return false;
        } else {
            hasPixels = hasPixels || marker == 0xda;
            at += 2 + qFromBigEndian<quint16>(bytes.data() + at + 2);
        }
    }
    return false;
}

constexpr qsizetype gifHead = 13;
constexpr qsizetype gifImageHead = 10;

// The bytes of a colour table, if the flags announce one.
qsizetype gifColors(quint8 flags)
{
    return (flags & 0x80) != 0 ? qsizetype(3) << ((flags & 7) + 1) : 0;
}

// Where a chain of blocks that begins there ends: behind its empty one. Beyond the end of the bytes
// when they end first.
qsizetype gifBlocksEnd(QByteArrayView bytes, qsizetype at)
{
    while (at < bytes.size()) {
        const quint8 length = byteAt(bytes, at);
        at += 1 + qsizetype(length);
        if (length == 0) {
            return at;
        }
    }
    return bytes.size() + 1;
}

// A GIF file: a head, then extensions and pictures, whose content is cut into blocks.
bool isWholeGif(QByteArrayView bytes)
{
    if (bytes.size() < gifHead) {
        return false;
    }
    qsizetype at = gifHead + gifColors(byteAt(bytes, 10));
    while (at < bytes.size() && bytes[at] == '!') {
        at = gifBlocksEnd(bytes, at + 2);
    }
    if (at + gifImageHead > bytes.size() || bytes[at] != ',') {
        return false;
    }
    const qsizetype colors = gifColors(byteAt(bytes, at + gifImageHead - 1));
    return gifBlocksEnd(bytes, at + gifImageHead + colors + 1) <= bytes.size();
}

} // namespace

bool isWholePicture(QByteArrayView bytes)
{
    if (isPng(bytes)) {
        return isWholePng(bytes);
    }
    if (bytes.startsWith("\xff\xd8")) {
        return isWholeJpeg(bytes);
    }
    if (bytes.startsWith("GIF8")) {
        return isWholeGif(bytes);
    }
    return !bytes.startsWith("BM") || isWholeBmp(bytes);
}
