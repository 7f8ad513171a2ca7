#include "platform/freedesktop/pictures/IconPng.h"

#include <QtEndian>

#include <array>
#include <optional>

constexpr QByteArrayView signature("\x89PNG\r\n\x1a\n", 8);
// Of a chunk: its length and kind before the data, its checksum behind.
constexpr qsizetype headSize = 8;
constexpr qsizetype sumSize = 4;
// No packing of this kind is tighter.
constexpr qint64 mostUnpacking = 1032;

using Tables = std::array<std::array<quint32, 256>, 8>;

// The checksum of PNG, eight bytes at a time: table n is that of a byte followed by n zero bytes.
static constexpr Tables makeTables()
{
    Tables tables {};
    for (quint32 i = 0; i < 256; ++i) {
        quint32 sum = i;
        for (int bit = 0; bit < 8; ++bit) {
            sum = (sum >> 1) ^ (0xedb88320U & (0U - (sum & 1U)));
        }
        tables[0][i] = sum;
    }
    for (quint32 i = 0; i < 256; ++i) {
        for (size_t n = 1; n < tables.size(); ++n) {
            const quint32 before = tables[n - 1][i];
            tables[n][i] = (before >> 8) ^ tables[0][before & 0xffU];
        }
    }
    return tables;
}

static quint32 checksum(QByteArrayView bytes)
{
    static constexpr Tables tables = makeTables();
    quint32 sum = ~0U;
    const char *at = bytes.data();
    const char *const end = at + bytes.size();
    for (; end - at >= 8; at += 8) {
        const quint32 low = qFromLittleEndian<quint32>(at) ^ sum;
        const quint32 high = qFromLittleEndian<quint32>(at + 4);
        sum = tables[7][low & 0xff] ^ tables[6][(low >> 8) & 0xff] ^ tables[5][(low >> 16) & 0xff]
            ^ tables[4][low >> 24] ^ tables[3][high & 0xff] ^ tables[2][(high >> 8) & 0xff]
            ^ tables[1][(high >> 16) & 0xff] ^ tables[0][high >> 24];
    }
    for (; at < end; ++at) {
        sum = (sum >> 8) ^ tables[0][(sum ^ quint8(*at)) & 0xff];
    }
    return ~sum;
}

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
        if (checksum(covered) != qFromBigEndian<quint32>(chunk->bytes.last(sumSize).data())) {
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
