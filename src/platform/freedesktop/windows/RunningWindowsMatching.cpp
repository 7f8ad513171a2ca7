// The part of what runs that finds the applications of the windows.

#include "platform/freedesktop/windows/RunningWindows.h"

#include <algorithm>
#include <functional>
#include <unistd.h>

namespace {

// How many windows stand above a dialog at most; a circle of them has no end.
constexpr int deepestDialog = 8;

} // namespace

void RunningWindows::match(const QList<xcb_window_t> &windows)
{
    if (windows.isEmpty()) {
        return;
    }
    // Dialogs may belong to one of them.
    QList<xcb_window_t> toMatch = windows;
    for (auto known = _known.cbegin(); known != _known.cend(); ++known) {
        if (_known.contains(known->traits.transientFor) && !windows.contains(known.key())) {
            toMatch.append(known.key());
        }
    }
    if (matchKnown(toMatch) || !_matcher.isOutdated()) {
        return;
    }
    // An application may have been installed a moment ago.
    matchUnknown();
}

bool RunningWindows::matchUnknown()
{
    QList<xcb_window_t> unknown;
    for (const xcb_window_t window : std::as_const(_list)) {
        if (_known.value(window).application.isEmpty()) {
            unknown.append(window);
        }
    }
    if (unknown.isEmpty()) {
        return false;
    }
    _matcher.refresh();
    matchKnown(unknown);
    return true;
}

// Dialogs come last, because they belong where the window below them does. True when all belong
// somewhere.
bool RunningWindows::matchKnown(QList<xcb_window_t> windows)
{
    const auto isDialog = [this](xcb_window_t window) {
        return _known.value(window).traits.transientFor != XCB_WINDOW_NONE;
    };
    std::stable_partition(windows.begin(), windows.end(), std::not_fn(isDialog));
    QHash<qint64, ProcessTraits> processes;
    const auto processOf = [&processes](const WindowTraits &traits) {
        if (!processes.contains(traits.processId)) {
            processes.insert(traits.processId, ProcessTraits::of(traits.processId));
        }
        return processes.value(traits.processId);
    };
    bool areAllKnown = true;
    for (const xcb_window_t window : std::as_const(windows)) {
        const WindowTraits &traits = _known[window].traits;
        QString application = applicationBelow(window);
        const bool isOwn = traits.processId == ::getpid();
        if (isOwn) {
            application = _ownApplication;
        } else if (application.isEmpty()) {
            application = _matcher.bundleOf(traits, processOf(traits));
            _known[window].launchedEntry = processOf(traits).launchedEntry;
        }
        areAllKnown = areAllKnown && (isOwn || !application.isEmpty());
        _known[window].application = application;
    }
    return areAllKnown;
}

// The application of the window that a dialog belongs to, through other dialogs.
QString RunningWindows::applicationBelow(xcb_window_t window) const
{
    xcb_window_t below = window;
    for (int i = 0; i < deepestDialog; ++i) {
        const xcb_window_t next = _known.value(below).traits.transientFor;
        if (!_known.contains(next)) {
            break;
        }
        below = next;
    }
    return below != window ? _known.value(below).application : QString();
}

// Who tells of them looks at what runs next; the others hear of it soon.
void RunningWindows::setApplications(const QStringList &paths)
{
    if (_matcher.setApplications(paths) && matchUnknown()) {
        const bool areLaunched = takeLaunched();
        _isActiveDue = true;
        QMetaObject::invokeMethod(
            this,
            [this, areLaunched] {
                if (areLaunched) {
                    Q_EMIT launched();
                }
                refresh();
            },
            Qt::QueuedConnection);
    }
}
