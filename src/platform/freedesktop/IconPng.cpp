#include "platform/freedesktop/IconPng.h"

#include <QtEndian>

#include <array>
#include <cstring>

constexpr QByteArrayView signature("\x89PNG\r\n\x1a\n", 8);
// Of a chunk: its length and kind before the data, its checksum behind.
constexpr qsizetype headSize = 8;
constexpr qsizetype sumSize = 4;

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

bool isWholePng(QByteArrayView bytes)
{
    if (!isPng(bytes)) {
        return false;
    }
    for (QByteArrayView rest = bytes.sliced(signature.size()); rest.size() >= headSize + sumSize;) {
        const quint32 length = qFromBigEndian<quint32>(rest.data());
        if (length > quint64(rest.size() - headSize - sumSize)) {
            return false;
        }
        // The checksum covers the kind as well as the data.
        const QByteArrayView covered = rest.sliced(4, 4 + qsizetype(length));
        if (checksum(covered) != qFromBigEndian<quint32>(rest.data() + headSize + length)) {
            return false;
        }
        if (covered.first(4) == "IEND") {
            return true;
        }
        rest = rest.sliced(headSize + qsizetype(length) + sumSize);
    }
    return false;
}
