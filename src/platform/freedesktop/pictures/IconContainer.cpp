#include "platform/freedesktop/pictures/IconContainer.h"

#include "platform/freedesktop/pictures/IconPng.h"
#include "platform/freedesktop/pictures/PictureFormat.h"

#include <QtEndian>

#include <algorithm>
#include <array>
#include <vector>

namespace {

// Parts beyond these are not looked at.
constexpr int mostParts = 64;
// An ICO file: a head, one entry a picture, the pictures.
constexpr qsizetype icoHead = 6;
constexpr qsizetype icoEntry = 16;
constexpr qsizetype icoSizeAt = 8;
constexpr qsizetype icoOffsetAt = 12;
// What stands before the pixels of a picture that is not PNG.
constexpr qsizetype bitmapHead = 40;
// Wider pictures are kept as PNG.
constexpr int largestBitmap = 512;
// An ICNS file: a head, then parts, each with its kind and its length before it.
constexpr qsizetype icnsHead = 8;

// The edges of what ICNS files hold beside PNG and JPEG 2000.
struct Kinds
{
    int extent;
    QByteArrayView transparency;
    // The best one first; the others are for displays of few colours.
    std::array<QByteArrayView, 4> colors;
};
constexpr std::array<Kinds, 4> icnsKinds { { { 16, "s8mk", { "is32", "ics8", "ics4", "ics#" } },
    { 32, "l8mk", { "il32", "icl8", "icl4", "ICN#" } },
    { 48, "h8mk", { "ih32", "ich8", "ich4", "ich#" } }, { 128, "t8mk", { "it32", {}, {}, {} } } } };

struct Part
{
    int extent = 0;
    QByteArrayView bytes;
    // Its entry in an ICO file.
    QByteArrayView entry;
};

int extentOfPng(QByteArrayView png)
{
    const QSize size = sizeOfPng(png);
    return std::max(size.width(), size.height());
}

// Zero when the pixels are not all there, or are too many to be an icon.
int extentOfBitmap(QByteArrayView bytes)
{
    if (bytes.size() < bitmapHead
        || qFromLittleEndian<quint32>(bytes.data()) != quint32(bitmapHead)) {
        return 0;
    }
    const auto width = qFromLittleEndian<qint32>(bytes.data() + 4);
    // Of the colours and of the transparency together.
    const auto height = qFromLittleEndian<qint32>(bytes.data() + 8) / 2;
    const int bits = qFromLittleEndian<quint16>(bytes.data() + 14);
    const auto colors = qFromLittleEndian<quint32>(bytes.data() + 32);
    if (width <= 0 || height <= 0 || std::max(width, height) > largestBitmap || bits > 32
        || colors > 256) {
        return 0;
    }
    const qsizetype row = (qsizetype(width) * bits + 31) / 32 * 4;
    return bytes.size() >= bitmapHead + row * height ? std::max(width, height) : 0;
}

bool isBetter(int extent, int best, int size)
{
    return best < size ? extent > best : extent >= size && extent < best;
}

// The bytes that an entry of an ICO file speaks of, empty when they are not all there.
QByteArrayView pictureOf(QByteArrayView ico, QByteArrayView entry)
{
    const auto size = qFromLittleEndian<quint32>(entry.data() + icoSizeAt);
    const auto offset = qFromLittleEndian<quint32>(entry.data() + icoOffsetAt);
    return qint64(offset) + size <= ico.size() ? ico.sliced(offset, size) : QByteArrayView();
}

using Parts = std::vector<QByteArrayView>;

// The first part of a kind; empty when there is none.
QByteArrayView partOf(const Parts &parts, QByteArrayView kind)
{
    const auto part = std::find_if(
        parts.begin(), parts.end(), [kind](QByteArrayView one) { return one.startsWith(kind); });
    return part != parts.end() ? *part : QByteArrayView();
}

Parts partsOf(QByteArrayView icns)
{
    Parts parts;
    QByteArrayView rest = icns.size() > icnsHead ? icns.sliced(icnsHead) : QByteArrayView();
    for (int i = 0; i < mostParts && rest.size() >= icnsHead; ++i) {
        const auto length = qFromBigEndian<quint32>(rest.data() + 4);
        if (length < quint32(icnsHead) || length > quint64(rest.size())) {
            break;
        }
        parts.push_back(rest.first(length));
        rest = rest.sliced(length);
    }
    return parts;
}

// An ICNS file of two parts; empty when there are no colours.
QByteArray icnsOf(const Parts &parts, QByteArrayView colors, QByteArrayView transparency)
{
    if (colors.isEmpty() || partOf(parts, colors).isEmpty()) {
        return {};
    }
    QByteArray body = partOf(parts, colors).toByteArray();
    body.append(partOf(parts, transparency));
    QByteArray head("icns\0\0\0\0", icnsHead);
    qToBigEndian(quint32(icnsHead + body.size()), head.data() + 4);
    return head + body;
}

} // namespace

QByteArray IconContainer::partOfIco(QByteArrayView ico, int size, QString *reason)
{
    Part best;
    const int count = ico.size() < icoHead ? 0 : qFromLittleEndian<quint16>(ico.data() + 4);
    for (int i = 0; i < std::min(count, mostParts); ++i) {
        if (ico.size() < icoHead + (i + 1) * icoEntry) {
            break;
        }
        const QByteArrayView entry = ico.sliced(icoHead + i * icoEntry, icoEntry);
        const QByteArrayView bytes = pictureOf(ico, entry);
        const int extent = isPng(bytes) ? extentOfPng(bytes) : extentOfBitmap(bytes);
        if (extent > 0 && isBetter(extent, best.extent, size)) {
            best = { extent, bytes, entry };
        }
    }
    if (best.extent == 0) {
        *reason = QStringLiteral("no picture in it that can be read");
        return {};
    }
    if (isPng(best.bytes)) {
        return best.bytes.toByteArray();
    }
    QByteArray single = ico.first(icoHead).toByteArray();
    single.append(best.entry);
    qToLittleEndian(quint16(1), single.data() + 4);
    qToLittleEndian(quint32(icoHead + icoEntry), single.data() + icoHead + icoOffsetAt);
    return single.append(best.bytes);
}

QByteArray IconContainer::partOfIcns(QByteArrayView icns, int size, QString *reason)
{
    const auto parts = partsOf(icns);
    int bestExtent = 0;
    QByteArray best;
    for (const Kinds &kinds : icnsKinds) {
        QByteArray file;
        for (size_t i = 0; file.isEmpty() && i < kinds.colors.size(); ++i) {
            file = icnsOf(parts, kinds.colors[i], kinds.transparency);
        }
        if (!file.isEmpty() && isBetter(kinds.extent, bestExtent, size)) {
            bestExtent = kinds.extent;
            best = file;
        }
    }
    for (const QByteArrayView part : parts) {
        const QByteArrayView bytes = part.sliced(icnsHead);
        const int extent = isPng(bytes) ? extentOfPng(bytes) : 0;
        if (extent > 0 && isBetter(extent, bestExtent, size)) {
            bestExtent = extent;
            best = bytes.toByteArray();
        }
    }
    if (best.isEmpty()) {
        *reason = QStringLiteral("no picture in it that can be read");
    }
    return best;
}
