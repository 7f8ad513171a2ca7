#include "platform/freedesktop/pictures/IconPng.h"

#include <QtEndian>

#include <optional>
#include <zlib.h>

constexpr QByteArrayView signature("\x89PNG\r\n\x1a\n", 8);
// Of a chunk: its length and kind before the data, its checksum behind.
constexpr qsizetype headSize = 8;
constexpr qsizetype sumSize = 4;
// No packing of this kind is tighter.
constexpr qint64 mostUnpacking = 1032;

bool isPng(QByteArrayView bytes)
{
    return bytes.startsWith(signature);
}

namespace {

struct Chunk
{
    QByteArrayView kind;
    QByteArrayView data;
    // All of it, with its length and checksum.
    QByteArrayView bytes;
};

// Takes the first chunk off `rest`; none when it is not all there.
std::optional<Chunk> takeChunk(QByteArrayView &rest)
{
    if (rest.size() < headSize + sumSize) {
        return {};
    }
    const quint32 length = qFromBigEndian<quint32>(rest.data());
    if (length > quint64(rest.size() - headSize - sumSize)) {
        return {};
    }
    const qsizetype size = headSize + qsizetype(length) + sumSize;
    const Chunk chunk { rest.sliced(4, 4), rest.sliced(headSize, qsizetype(length)),
        rest.first(size) };
    rest = rest.sliced(size);
    return chunk;
}

bool isPixels(QByteArrayView kind)
{
    // A capital letter marks what every decoder must know.
    return kind.front() < 'a' || kind == "tRNS";
}

} // namespace

bool isWholePng(QByteArrayView bytes)
{
    if (!isPng(bytes)) {
        return false;
    }
    QByteArrayView rest = bytes.sliced(signature.size());
    while (const auto chunk = takeChunk(rest)) {
        // The checksum covers the kind as well as the data.
        const QByteArrayView covered = chunk->bytes.sliced(4).chopped(sumSize);
        const uLong sum =
            crc32_z(0, reinterpret_cast<const Bytef *>(covered.data()), size_t(covered.size()));
        if (sum != qFromBigEndian<quint32>(chunk->bytes.last(sumSize).data())) {
            return false;
        }
        if (chunk->kind == "IEND") {
            return true;
        }
    }
    return false;
}

QByteArray pixelsOfPng(const QByteArray &png)
{
    QByteArray pixels;
    pixels.reserve(png.size());
    pixels.append(signature);
    QByteArrayView rest = QByteArrayView(png).sliced(signature.size());
    while (const auto chunk = takeChunk(rest)) {
        if (isPixels(chunk->kind)) {
            pixels.append(chunk->bytes);
        }
        if (chunk->kind == "IEND") {
            break;
        }
    }
    return pixels;
}

qint64 unpackedTexts(QByteArrayView png)
{
    qint64 texts = 0;
    QByteArrayView rest = png.sliced(signature.size());
    while (const auto chunk = takeChunk(rest)) {
        if (chunk->kind == "IEND") {
            break;
        }
        // Behind the name of an international text stands whether it is packed.
        const qsizetype flag = chunk->data.indexOf('\0') + 1;
        const bool isPacked = chunk->kind == "zTXt"
            || (chunk->kind == "iTXt" && flag < chunk->data.size() && chunk->data[flag] != 0);
        if (chunk->kind.endsWith("Xt")) {
            texts += chunk->bytes.size() * (isPacked ? mostUnpacking : 1);
        }
    }
    return texts;
}
