#include "shell/MemoryRelease.h"

#include "icons/IconLoader.h"
#include "platform/Memory.h"
#include "shell/panel/OTWindow.h"

#include <QTimer>

MemoryRelease::MemoryRelease(Memory &memory, const OTWindow &panel)
    : _memory(memory)
    , _panel(panel)
{
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
            _memory.giveBack();
        }
    });
}
