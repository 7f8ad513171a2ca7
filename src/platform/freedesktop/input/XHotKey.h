// The hot key of an X display, served by a thread of its own: the press stops the keyboard of the
// whole session, and nothing that keeps the main thread busy may keep it stopped.

#pragma once

#include "platform/HotKey.h"

#include <memory>

class XHotKey final : public HotKey
{
    Q_OBJECT

public:
    // Connects to the display that the environment names.
    XHotKey();
    ~XHotKey() override;

    QString registerKey(const HotKeyCombination &combination) override;
    void unregisterKey() override;
    QString settingsAdvice() const override { return {}; }
    QStringList namesOfKey(quint32 nativeScanCode) const override;
    void handKeysTo(const QWindow &window) override;

private:
    class Thread;

    void handlePress(const ActivationStamp &stamp);

    std::unique_ptr<Thread> _thread;
    // As named by the X server, while a press is told; 0 for none.
    quint32 _window = 0;
};
