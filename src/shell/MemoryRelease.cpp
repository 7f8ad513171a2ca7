#include "shell/MemoryRelease.h"

#include "icons/IconLoader.h"
#include "platform/Memory.h"
#include "shell/panel/OTWindow.h"

#include <QPixmapCache>
#include <QTimer>

namespace {

// Of pictures that Qt has scaled for window icons and menus, in kilobytes; the grid keeps its own.
// Each step of a scan shows a window icon of its own, and ten megabytes of these would stay, which
// is what Qt allows.
constexpr int KeptPictures = 1024;

} // namespace

MemoryRelease::MemoryRelease(Memory &memory, const OTWindow &panel)
    : _memory(memory)
    , _panel(panel)
{
    QPixmapCache::setCacheLimit(KeptPictures);
    connect(&panel, &OTWindow::hidden, this, &MemoryRelease::giveMemoryBackSoon);
    connect(&IconLoader::sharedIconLoader(), &IconLoader::finished, this,
        &MemoryRelease::giveMemoryBackSoon);
}

void MemoryRelease::giveMemoryBackSoon()
{
    QTimer::singleShot(MemoryPause, this, [this] {
        const bool isAtRest =
            !_panel.isVisible() && IconLoader::sharedIconLoader().pendingCount() == 0;
        if (isAtRest) {
            IconLoader::sharedIconLoader().giveUpCopies();
            QPixmapCache::clear();
            _memory.giveBack();
        }
    });
}
