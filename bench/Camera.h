// Takes pictures of the whole screen of $DISPLAY, each in one request and through memory shared
// with the X server, so that none is torn by being taken.
//
// Knows no Qt: a program that times cold starts must not have Qt's libraries in memory. Ends the
// program, with a line that says why, when there is no X server or the screen cannot be read.

#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>
#include <xcb/shm.h>
#include <xcb/xcb.h>

class Camera final
{
public:
    // Pixels as 0xRRGGBB, from the top left, row by row.
    using Picture = std::vector<uint32_t>;

    Camera();
    ~Camera();
    Camera(const Camera &) = delete;
    Camera &operator=(const Camera &) = delete;

    int width() const { return _width; }
    int height() const { return _height; }

    // Of what was taken last.
    Picture picture() const { return { _pixels, _pixels + pixelCount() }; }
    // Of each STEP rows and columns one. Nothing is left out with 1.
    Picture thinned(int step) const;
    bool differsFrom(const Picture &picture) const;

    void take();

private:
    size_t pixelCount() const { return size_t(_width) * size_t(_height); }

    xcb_connection_t *_connection;
    xcb_window_t _root = XCB_WINDOW_NONE;
    int _width = 0;
    int _height = 0;
    xcb_shm_seg_t _segment = 0;
    uint32_t *_pixels = nullptr;
};
