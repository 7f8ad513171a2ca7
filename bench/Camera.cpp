#include "Camera.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sys/ipc.h>
#include <sys/shm.h>

namespace {

constexpr uint32_t Colors = 0xffffff;

[[noreturn]] void fail(const char *what)
{
    std::fprintf(stderr, "camera: %s\n", what);
    std::exit(2);
}

} // namespace

Camera::Camera()
    : _connection(xcb_connect(nullptr, nullptr))
{
    if (xcb_connection_has_error(_connection) != 0) {
        fail("no X server");
    }
    const xcb_screen_t *const screen = xcb_setup_roots_iterator(xcb_get_setup(_connection)).data;
    _root = screen->root;
    _width = screen->width_in_pixels;
    _height = screen->height_in_pixels;
    const int id = shmget(IPC_PRIVATE, pixelCount() * sizeof(uint32_t), IPC_CREAT | 0600);
    void *const memory = id < 0 ? nullptr : shmat(id, nullptr, 0);
    if (memory == nullptr) {
        fail("no shared memory");
    }
    _pixels = static_cast<uint32_t *>(memory);
    _segment = xcb_generate_id(_connection);
    xcb_shm_attach(_connection, _segment, uint32_t(id), 0);
    take();
    shmctl(id, IPC_RMID, nullptr);
}

Camera::~Camera()
{
    xcb_disconnect(_connection);
    shmdt(_pixels);
}

Camera::Picture Camera::thinned(int step) const
{
    Picture picture;
    picture.reserve(pixelCount() / size_t(step) / size_t(step));
    for (int y = 0; y < _height; y += step) {
        const uint32_t *const row = _pixels + size_t(y) * size_t(_width);
        for (int x = 0; x < _width; x += step) {
            picture.push_back(row[x]);
        }
    }
    return picture;
}

bool Camera::differsFrom(const Picture &picture) const
{
    return picture.empty()
        || std::memcmp(picture.data(), _pixels, pixelCount() * sizeof(uint32_t)) != 0;
}

void Camera::take()
{
    const auto cookie = xcb_shm_get_image(_connection, _root, 0, 0, uint16_t(_width),
        uint16_t(_height), ~0U, XCB_IMAGE_FORMAT_Z_PIXMAP, _segment, 0);
    auto *const reply = xcb_shm_get_image_reply(_connection, cookie, nullptr);
    if (reply == nullptr || reply->depth != 24) {
        fail("cannot read the screen");
    }
    std::free(reply);
    // The rest of a pixel is not seen.
    std::for_each(_pixels, _pixels + pixelCount(), [](uint32_t &pixel) { pixel &= Colors; });
}
