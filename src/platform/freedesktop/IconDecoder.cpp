#include "platform/freedesktop/IconDecoder.h"

#include "platform/freedesktop/FileState.h"
#include "platform/freedesktop/GioPointer.h"
#include "platform/freedesktop/Log.h"
#include "platform/freedesktop/PictureWholeness.h"
#include "platform/freedesktop/SvgFeatures.h"
#include "platform/freedesktop/SvgGuard.h"
#include "support/OneLine.h"
#include "support/PremultipliedImage.h"

#include <QBuffer>
#include <QImageReader>
#include <QPainter>
#include <QSvgRenderer>

#include <algorithm>

// The largest icon anybody asks for is a few hundred pixels.
constexpr int largestIcon = 4096;
// Pictures in one icon file, beyond which the rest is not looked at.
constexpr int mostPictures = 64;

namespace {

// The whole of a gzip file, empty with the reason when it is damaged or holds more than
// `mostBytes`.
QByteArray unpacked(const QByteArray &packed, qsizetype mostBytes, QString *reason)
{
    const GioPointer<GConverter> converter(
        G_CONVERTER(g_zlib_decompressor_new(G_ZLIB_COMPRESSOR_FORMAT_GZIP)));
    QByteArray text(std::min(mostBytes + 1, 8 * packed.size() + 4096), Qt::Uninitialized);
    gsize consumed = 0;
    gsize filled = 0;
    for (;;) {
        gsize read = 0;
        gsize written = 0;
        GioError error;
        const GConverterResult result =
            g_converter_convert(converter.get(), packed.constData() + consumed,
                gsize(packed.size()) - consumed, text.data() + filled, gsize(text.size()) - filled,
                G_CONVERTER_INPUT_AT_END, &read, &written, error.receive());
        consumed += read;
        filled += written;
        if (result == G_CONVERTER_ERROR && !error.matches(G_IO_ERROR, G_IO_ERROR_NO_SPACE)) {
            *reason = error.text();
            return {};
        }
        if (result == G_CONVERTER_FINISHED) {
            text.truncate(qsizetype(filled));
            return text;
        }
        if (qsizetype(filled) > mostBytes) {
            *reason = QStringLiteral("larger than %1 bytes when unpacked").arg(mostBytes);
            return {};
        }
        if (qsizetype(filled) == text.size() || result == G_CONVERTER_ERROR) {
            text.resize(std::min(mostBytes + 1, 2 * text.size()));
        }
    }
}

QRectF fitted(const QSizeF &picture, int size)
{
    const QSizeF target = picture.scaled(size, size, Qt::KeepAspectRatio);
    return { QPointF(size - target.width(), size - target.height()) / 2, target };
}

QImage emptyIcon(int size)
{
    QImage icon(size, size, QImage::Format_ARGB32_Premultiplied);
    icon.fill(Qt::transparent);
    return icon;
}

QImage decodeSvg(const QByteArray &svg, int size, QString *reason)
{
    *reason = SvgGuard::refusal(svg);
    if (!reason->isEmpty()) {
        return {};
    }
    QSvgRenderer renderer;
    // An animated picture would start a timer, which not every thread can have.
    renderer.setFramesPerSecond(0);
    renderer.load(svg);
    const QSizeF extent = renderer.viewBoxF().size();
    // The extent may come from the shapes alone, and they may be anywhere.
    if (!renderer.isValid() || !(extent.width() > 0 && extent.height() > 0)
        || !(std::max(extent.width(), extent.height()) <= SvgGuard::largestExtent)) {
        *reason = renderer.isValid() ? QStringLiteral("its size is out of range")
                                     : QStringLiteral("not an SVG picture");
        return {};
    }
    QImage icon = emptyIcon(size);
    QPainter painter(&icon);
    const QRectF place = fitted(extent, size);
    if (place.size() != QSizeF(icon.size())) {
        // Shapes may reach beyond the view box, into the margins.
        painter.setClipRect(place);
    }
    renderer.render(&painter, place);
    return icon;
}

// An icon file holds one drawing in several sizes: goes to the smallest one that need not be
// enlarged.
void chooseBestSize(QImageReader &reader, int size)
{
    int best = 0;
    int bestExtent = 0;
    const int count = std::min(reader.imageCount(), mostPictures);
    for (int i = 0; i < count && reader.jumpToImage(i); ++i) {
        const int extent = std::max(reader.size().width(), reader.size().height());
        const bool isBetter =
            bestExtent < size ? extent > bestExtent : extent >= size && extent < bestExtent;
        if (isBetter) {
            best = i;
            bestExtent = extent;
        }
    }
    reader.jumpToImage(best);
}

// Puts the reader on the picture that suits a square of `size`. False with the reason when there is
// none.
bool openPicture(QImageReader &reader, int size, QString *reason)
{
    // Formats without a mark of their own would make a picture of anything, and SVG has had its
    // turn.
    static const QByteArrayList excluded { "tga", "wbmp", "svg", "svgz", "pdf" };
    reader.setDecideFormatFromContent(true);
    const QByteArray format = reader.format();
    if (format.isEmpty() || excluded.contains(format)) {
        *reason = QStringLiteral("not a known picture format");
        return false;
    }
    if (format == "icns" || format == "ico") {
        chooseBestSize(reader, size);
    }
    return true;
}

QImage readPicture(QByteArray bytes, int size, QString *reason)
{
    if (!isWholePicture(bytes)) {
        *reason = QStringLiteral("cut off or damaged");
        return {};
    }
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    if (!openPicture(reader, size, reason)) {
        return {};
    }
    const QSize extent = reader.size();
    if (qint64(extent.width()) * extent.height() > mostPicturePixels) {
        *reason =
            QStringLiteral("%1 × %2 pixels are too many").arg(extent.width()).arg(extent.height());
        return {};
    }
    QImage picture;
    if (reader.format() == "bmp") {
        // Rows may leave pixels out, which would show what the memory held before.
        picture = QImage(extent, reader.imageFormat());
        picture.fill(0);
    }
    if (!reader.read(&picture) || picture.isNull()) {
        *reason = reader.errorString();
        return {};
    }
    return picture;
}

QImage decodePicture(const QByteArray &bytes, int size, int largestStored, QString *reason)
{
    QImage picture = readPicture(bytes, largestStored > 0 ? largestStored : size, reason);
    if (picture.isNull()) {
        return {};
    }
    if (largestStored > 0) {
        size = std::min(std::max(picture.width(), picture.height()), largestStored);
    }
    // Before scaling, or the colour of invisible pixels would show at the edges.
    picture = premultipliedImage(picture);
    picture.setDevicePixelRatio(1);
    const QSize target = fitted(picture.size(), size).size().toSize().expandedTo({ 1, 1 });
    if (picture.size() != target) {
        // Averages over all pixels when making smaller, however much.
        picture = picture.scaled(target, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    }
    if (target == QSize(size, size)) {
        return picture;
    }
    QImage icon = emptyIcon(size);
    QPainter painter(&icon);
    painter.drawImage((size - target.width()) / 2, (size - target.height()) / 2, picture);
    return icon;
}

// Markup begins with a bracket, perhaps behind a byte order mark and blanks; no other format does.
bool isMarkup(QByteArrayView bytes)
{
    for (const char *mark : { "\xef\xbb\xbf", "\xff\xfe", "\xfe\xff" }) {
        if (bytes.startsWith(mark)) {
            return true;
        }
    }
    return bytes.trimmed().startsWith('<');
}

QImage decodeBytes(QByteArray bytes, int size, int largestStored, QString *reason, bool *isFlawed)
{
    if (bytes.startsWith("\x1f\x8b")) {
        bytes = unpacked(bytes, SvgGuard::mostBytes, reason);
        if (!reason->isEmpty()) {
            return {};
        }
    }
    if (bytes.isEmpty()) {
        *reason = QStringLiteral("empty");
        return {};
    }
    if (!isMarkup(bytes)) {
        return decodePicture(bytes, size, largestStored, reason);
    }
    if (isFlawed) {
        *isFlawed = SvgFeatures::goBeyondRenderer(bytes);
    }
    return decodeSvg(bytes, size, reason);
}

} // namespace

QImage decodeIcon(const QString &file, int size)
{
    QString problem;
    QImage icon = tryDecodeIcon(file, size, 0, &problem);
    if (!problem.isEmpty()) {
        logUnreadableIcon(file, problem);
    }
    return icon;
}

void logUnreadableIcon(const QString &file, const QString &problem)
{
    qCWarning(lcPlatform, "cannot read icon %ls: %ls", qUtf16Printable(oneLine(file)),
        qUtf16Printable(oneLine(problem)));
}

QImage tryDecodeIcon(
    const QString &file, int size, int largestStored, QString *problem, bool *isFlawed)
{
    problem->clear();
    if (file.isEmpty() || size <= 0 || std::max(size, largestStored) > largestIcon) {
        return {};
    }
    const std::optional<QByteArray> bytes = readSmallFile(file, largestPictureFile, problem);
    QImage icon = bytes ? decodeBytes(*bytes, size, largestStored, problem, isFlawed) : QImage();
    *problem = problem->trimmed();
    return icon;
}
