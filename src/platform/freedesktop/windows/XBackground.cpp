#include "platform/freedesktop/windows/XBackground.h"

#include "platform/freedesktop/x11/XConnection.h"

#include <QImage>
#include <QtEndian>

#include <algorithm>

namespace {

constexpr quint8 depth = 32;
// Of a request that carries a part of a picture.
constexpr quint32 putImageHeader = 32;

bool isOfDepth(xcb_connection_t *connection, xcb_window_t window)
{
    const XReply<xcb_get_geometry_reply_t> geometry(
        xcb_get_geometry_reply(connection, xcb_get_geometry(connection, window), nullptr));
    return geometry && geometry->depth == depth;
}

bool hasByteOrder(xcb_connection_t *connection)
{
    const bool isLittle = xcb_get_setup(connection)->image_byte_order == XCB_IMAGE_ORDER_LSB_FIRST;
    return isLittle == (QSysInfo::ByteOrder == QSysInfo::LittleEndian);
}

void put(xcb_connection_t *connection, xcb_pixmap_t pixmap, const QImage &picture)
{
    const xcb_gcontext_t context = xcb_generate_id(connection);
    xcb_create_gc(connection, context, pixmap, 0, nullptr);
    const auto stride = quint32(picture.bytesPerLine());
    const quint32 longest = xcb_get_maximum_request_length(connection) * 4 - putImageHeader;
    const int rows = int(std::max(longest / stride, 1U));
    for (int y = 0; y < picture.height(); y += rows) {
        const int height = std::min(rows, picture.height() - y);
        xcb_put_image(connection, XCB_IMAGE_FORMAT_Z_PIXMAP, pixmap, context,
            quint16(picture.width()), quint16(height), 0, qint16(y), 0, depth,
            quint32(height) * stride, picture.constScanLine(y));
    }
    xcb_free_gc(connection, context);
}

} // namespace

bool XBackground::set(xcb_connection_t *connection, xcb_window_t window, const QImage &picture)
{
    if (picture.isNull() || !hasByteOrder(connection) || !isOfDepth(connection, window)) {
        return false;
    }
    const QImage pixels = picture.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    const xcb_pixmap_t pixmap = xcb_generate_id(connection);
    xcb_create_pixmap(
        connection, depth, pixmap, window, quint16(pixels.width()), quint16(pixels.height()));
    put(connection, pixmap, pixels);
    // With any gravity but this one the old content would be kept.
    const quint32 values[] { pixmap, XCB_GRAVITY_BIT_FORGET };
    xcb_change_window_attributes(
        connection, window, XCB_CW_BACK_PIXMAP | XCB_CW_BIT_GRAVITY, values);
    // The window keeps it as long as it needs it.
    xcb_free_pixmap(connection, pixmap);
    return true;
}

void XBackground::clear(xcb_connection_t *connection, xcb_window_t window)
{
    const quint32 values[] { XCB_BACK_PIXMAP_NONE, XCB_GRAVITY_NORTH_WEST };
    xcb_change_window_attributes(
        connection, window, XCB_CW_BACK_PIXMAP | XCB_CW_BIT_GRAVITY, values);
}
