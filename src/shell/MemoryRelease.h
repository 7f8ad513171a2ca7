// Gives memory back a moment after the panel was hidden, or the last icon was loaded, unless the
// program is at work again by then.

#pragma once

#include <QObject>

class OTWindow;
class Memory;

class MemoryRelease final : public QObject
{
    Q_OBJECT

public:
    // After the panel has been hidden, in milliseconds.
    static constexpr int MemoryPause = 200;

    // Both must outlive this.
    MemoryRelease(Memory &memory, const OTWindow &panel);

private:
    void giveMemoryBackSoon();

    Memory &_memory;
    const OTWindow &_panel;
};
