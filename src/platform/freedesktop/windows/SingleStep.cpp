#include "platform/freedesktop/windows/SingleStep.h"

#include "platform/freedesktop/x11/XConnection.h"

#include <xcb/sync.h>
#include <xcb/xfixes.h>

namespace {

// Of the Shape extension, which has a header of its own.
constexpr xcb_shape_kind_t boundingShape = 0;
constexpr xcb_shape_kind_t inputShape = 2;

// Of the window manager among the clients of the X server. All others have the first.
constexpr qint32 usualPriority = 0;
constexpr qint32 firstPriority = 1;

void emptyShape(xcb_connection_t *connection, xcb_window_t window, xcb_shape_kind_t kind)
{
    const xcb_xfixes_region_t nothing = xcb_generate_id(connection);
    xcb_xfixes_create_region(connection, nothing, 0, nullptr);
    xcb_xfixes_set_window_shape_region(connection, window, kind, 0, 0, nothing);
    xcb_xfixes_destroy_region(connection, nothing);
}

// What the window manager has around a window; None when there is nothing.
xcb_window_t frameOf(xcb_connection_t *connection, xcb_window_t window)
{
    for (xcb_window_t outermost = window;;) {
        const XReply<xcb_query_tree_reply_t> tree(
            xcb_query_tree_reply(connection, xcb_query_tree(connection, outermost), nullptr));
        if (!tree) {
            return XCB_WINDOW_NONE;
        }
        if (tree->parent == tree->root) {
            return outermost == window ? xcb_window_t(XCB_WINDOW_NONE) : outermost;
        }
        outermost = tree->parent;
    }
}

// What is on the screen. To be freed.
xcb_pixmap_t pictureOf(xcb_connection_t *connection, xcb_window_t root, const QRect &area)
{
    const XReply<xcb_get_geometry_reply_t> screen(
        xcb_get_geometry_reply(connection, xcb_get_geometry(connection, root), nullptr));
    if (!screen || area.isEmpty()) {
        return XCB_PIXMAP_NONE;
    }
    const xcb_pixmap_t picture = xcb_generate_id(connection);
    xcb_create_pixmap(
        connection, screen->depth, picture, root, quint16(area.width()), quint16(area.height()));
    const xcb_gcontext_t context = xcb_generate_id(connection);
    // No event for each copy.
    const quint32 values[] { XCB_SUBWINDOW_MODE_INCLUDE_INFERIORS, 0 };
    xcb_create_gc(
        connection, context, picture, XCB_GC_SUBWINDOW_MODE | XCB_GC_GRAPHICS_EXPOSURES, values);
    xcb_copy_area(connection, root, picture, context, qint16(area.x()), qint16(area.y()), 0, 0,
        quint16(area.width()), quint16(area.height()));
    xcb_free_gc(connection, context);
    return picture;
}

} // namespace

SingleStep::SingleStep(xcb_connection_t *connection, xcb_window_t root)
    : _connection(connection)
    , _root(root)
{ }

SingleStep::~SingleStep()
{
    end();
}

void SingleStep::begin(xcb_window_t window, const QRect &area, bool isComposited)
{
    if (_frame != XCB_WINDOW_NONE || _cover != XCB_WINDOW_NONE) {
        return;
    }
    _frame = frameOf(_connection, window);
    if (_frame != XCB_WINDOW_NONE) {
        // Of the client that made the window.
        xcb_sync_set_priority(_connection, _frame, firstPriority);
    }
    if (!isComposited) {
        cover(area);
    }
}

void SingleStep::end()
{
    if (_frame != XCB_WINDOW_NONE) {
        xcb_sync_set_priority(_connection, _frame, usualPriority);
        _frame = XCB_WINDOW_NONE;
    }
    if (_cover != XCB_WINDOW_NONE) {
        xcb_destroy_window(_connection, _cover);
        _cover = XCB_WINDOW_NONE;
    }
}

// A window without a frame goes in one step by itself.
void SingleStep::takeFrameAway(xcb_connection_t *connection, xcb_window_t window)
{
    const xcb_window_t frame = frameOf(connection, window);
    if (frame != XCB_WINDOW_NONE) {
        emptyShape(connection, frame, boundingShape);
    }
}

void SingleStep::cover(const QRect &area)
{
    const xcb_pixmap_t picture = pictureOf(_connection, _root, area);
    if (picture == XCB_PIXMAP_NONE) {
        return;
    }
    _cover = xcb_generate_id(_connection);
    const quint32 values[] { picture, 1 };
    xcb_create_window(_connection, XCB_COPY_FROM_PARENT, _cover, _root, qint16(area.x()),
        qint16(area.y()), quint16(area.width()), quint16(area.height()), 0,
        XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
        XCB_CW_BACK_PIXMAP | XCB_CW_OVERRIDE_REDIRECT, values);
    xcb_free_pixmap(_connection, picture);
    emptyShape(_connection, _cover, inputShape);
    xcb_map_window(_connection, _cover);
}
