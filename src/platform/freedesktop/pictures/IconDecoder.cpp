#include "platform/freedesktop/pictures/IconDecoder.h"

#include "platform/freedesktop/base/FileState.h"
#include "platform/freedesktop/base/GioPointer.h"
#include "platform/freedesktop/base/Log.h"
#include "platform/freedesktop/pictures/IconContainer.h"
#include "platform/freedesktop/pictures/IconPng.h"
#include "platform/freedesktop/pictures/PictureFormat.h"
#include "platform/freedesktop/pictures/SvgCanvas.h"
#include "platform/freedesktop/pictures/SvgFeatures.h"
#include "platform/freedesktop/pictures/SvgGuard.h"
#include "support/OneLine.h"
#include "support/PremultipliedImage.h"

#include <QBuffer>
#include <QImageReader>
#include <QPainter>
#include <QSvgRenderer>

#include <algorithm>
#include <utility>

// The largest icon asked for is a few hundred pixels.
constexpr int largestIcon = 4096;
// Of the pixels of a picture while it is decoded: 8 million usual ones.
constexpr qint64 mostDecodedBytes = 32 * 1024 * 1024;
// Its reader keeps an entry for each of its colours.
constexpr qsizetype largestXpm = 2 * 1024 * 1024;

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

// A picture that was painted on keeps the engine with all that it needed: ten kilobytes an icon.
QImage withoutPaintEngine(const QImage &icon)
{
    return icon.copy();
}

QImage decodeSvg(const QByteArray &svg, int size, QString *reason, bool *isFlawed)
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
    SvgCanvas canvas(&icon);
    QPainter painter(&canvas);
    const QRectF place = fitted(extent, size);
    if (place.size() != QSizeF(icon.size())) {
        // Shapes may reach beyond the view box, into the margins.
        painter.setClipRect(place);
    }
    renderer.render(&painter, place);
    painter.end();
    if (canvas.isExhausted()) {
        *reason = QStringLiteral("too much to draw");
        return {};
    }
    if (isFlawed) {
        *isFlawed = SvgFeatures::goBeyondRenderer(svg);
    }
    return withoutPaintEngine(icon);
}

// Of a file that holds one icon in several sizes, the part that suits; of any other all of it.
QByteArray suitablePart(const QByteArray &bytes, int size, QString *reason)
{
    const QByteArray format = pictureFormat(bytes);
    if (format == "ico") {
        return IconContainer::partOfIco(bytes, size, reason);
    }
    return format == "icns" ? IconContainer::partOfIcns(bytes, size, reason) : bytes;
}

// Why a picture must not be decoded; empty when it may.
QString refusalOfPicture(const QByteArray &bytes, const QByteArray &format)
{
    if (format.isEmpty()) {
        return QStringLiteral("not a picture format of icons");
    }
    if (format == "png" && !isWholePng(bytes)) {
        return QStringLiteral("cut off or damaged");
    }
    if (format == "jpeg" && hasTooManyScans(bytes)) {
        return QStringLiteral("too many scans");
    }
    // The parts of icon files without a size of their own are small.
    const bool isSmall = format == "ico" || format == "icns";
    if ((!isSmall && decodedBytes(bytes, format) > mostDecodedBytes)
        || (format == "xpm" && bytes.size() > largestXpm)) {
        return QStringLiteral("too large a picture");
    }
    return {};
}

QImage readPicture(QByteArray bytes, int size, QString *reason)
{
    bytes = suitablePart(bytes, size, reason);
    const QByteArray format = pictureFormat(bytes);
    if (reason->isEmpty()) {
        *reason = refusalOfPicture(bytes, format);
    }
    if (!reason->isEmpty()) {
        return {};
    }
    if (format == "png") {
        bytes = pixelsOfPng(bytes);
    }
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer, format);
    QImage picture = reader.read();
    if (picture.isNull()) {
        *reason = reader.errorString();
    }
    return picture;
}

QImage decodePicture(QByteArray bytes, int size, int largestStored, QString *reason)
{
    QImage picture =
        readPicture(std::move(bytes), largestStored > 0 ? largestStored : size, reason);
    if (picture.isNull()) {
        return {};
    }
    if (largestStored > 0) {
        size = std::min(std::max(picture.width(), picture.height()), largestStored);
    }
    // Before scaling, or the colour of invisible pixels would show at the edges.
    picture = premultipliedImage(std::move(picture));
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
    painter.end();
    return withoutPaintEngine(icon);
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
    return isMarkup(bytes) ? decodeSvg(bytes, size, reason, isFlawed)
                           : decodePicture(std::move(bytes), size, largestStored, reason);
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
    std::optional<QByteArray> bytes = readSmallFile(file, largestPictureFile, problem);
    QImage icon =
        bytes ? decodeBytes(std::move(*bytes), size, largestStored, problem, isFlawed) : QImage();
    *problem = problem->trimmed();
    return icon;
}
