#include "platform/freedesktop/pictures/PictureWholeness.h"

#include "platform/freedesktop/pictures/IconPng.h"

#include <QtEndian>

namespace {

quint8 byteAt(QByteArrayView bytes, qsizetype at)
{
    return quint8(bytes[at]);
}

// A progressive picture has some ten scans. Each further one goes through all pixels again.
constexpr int mostScans = 60;

// A JPEG file: segments behind a marker each, and behind some of them compressed data, in which no
// marker occurs that could be mistaken. Segments are skipped as a whole: a small preview in one has
// markers of its own.
bool isWholeJpeg(QByteArrayView bytes)
{
    int scans = 0;
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
            return scans > 0 && scans <= mostScans;
        } else if (at + 4 > bytes.size()) {
            return false;
        } else {
            scans += marker == 0xda ? 1 : 0;
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
    return true;
}
