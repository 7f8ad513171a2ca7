#include "platform/freedesktop/windows/WindowControl.h"

#include "platform/freedesktop/base/Log.h"
#include "platform/freedesktop/windows/RunningWindows.h"

#include <algorithm>

namespace {

// States of the inter-client conventions.
constexpr quint32 iconicState = 3;

} // namespace

std::optional<RunningProcess> WindowControl::processOf(const QString &bundlePath) const
{
    const quint64 serialNumber = _windows.serialNumberOf(bundlePath);
    if (serialNumber == 0) {
        return std::nullopt;
    }
    RunningProcess process;
    process.serialNumber = { quint32(serialNumber >> 32), quint32(serialNumber) };
    for (const WindowTraits &window : _windows.windowsOf(bundlePath)) {
        if (process.identifier == 0) {
            process.identifier = window.processId;
        }
    }
    return process;
}

bool WindowControl::isVisible(const QString &bundlePath) const
{
    const QList<WindowTraits> windows = _windows.windowsOf(bundlePath);
    return std::any_of(windows.begin(), windows.end(),
        [](const WindowTraits &window) { return !window.isHidden; });
}

// A window that is mapped is taken out of its icon. Some window managers make it active with that,
// which is not what was asked for.
void WindowControl::show(const QString &bundlePath)
{
    const xcb_window_t front = _windows.activeWindow();
    QSet<xcb_window_t> shown;
    for (const WindowTraits &window : _windows.windowsOf(bundlePath)) {
        if (window.isHidden) {
            _windows.connection().map(window.window);
            shown.insert(window.window);
        }
    }
    if (!shown.isEmpty()) {
        _windows.handBack(front, shown, bundlePath);
    }
}

void WindowControl::hide(const QString &bundlePath)
{
    for (const WindowTraits &window : _windows.windowsOf(bundlePath)) {
        _windows.connection().tellManager(
            window.window, XConnection::WmChangeState, { iconicState });
    }
}

bool WindowControl::activate(const QString &bundlePath)
{
    return _windows.raise(bundlePath);
}

// A dialog goes with the window it belongs to, or is that window's way to ask the user back. Window
// managers kill what does not say how it wants to be closed, so that is left alone.
void WindowControl::quit(const QString &bundlePath)
{
    const QList<WindowTraits> windows = _windows.windowsOf(bundlePath);
    _windows.expectQuestion(bundlePath);
    const auto isDialog = [&windows](const WindowTraits &window) {
        return std::any_of(windows.begin(), windows.end(), [&window](const WindowTraits &other) {
            return other.window == window.transientFor && other.window != window.window;
        });
    };
    for (const WindowTraits &window : windows) {
        if (isDialog(window)) {
            continue;
        }
        if (window.isClosable) {
            _windows.connection().tellManager(window.window, XConnection::NetCloseWindow,
                { XCB_CURRENT_TIME, XConnection::FromPager });
        } else {
            qCDebug(
                lcPlatform, "%s: a window cannot be closed politely", qUtf8Printable(bundlePath));
        }
    }
}
