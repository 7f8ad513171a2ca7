// Progress as docks and task bars show it on an application's icon: a signal on the session bus
// that several of them have agreed on, https://wiki.ubuntu.com/Unity/LauncherAPI
//
// The bus is not touched before there is something to show. Without one nothing happens.

#pragma once

#include "platform/TaskBarProgress.h"
#include "platform/freedesktop/bus/BusConnection.h"

#include <chrono>
#include <functional>
#include <optional>

class LauncherProgress final : public TaskBarProgress
{
public:
    using Time = std::chrono::milliseconds;
    using Clock = std::function<Time()>;

    // The clock only ever runs forwards.
    explicit LauncherProgress(Clock clock = &LauncherProgress::steadyTime);
    ~LauncherProgress() override;
    Q_DISABLE_COPY_MOVE(LauncherProgress)

    void show(int step, int count) override;
    void end() override;

private:
    static Time steadyTime();
    void send(double progress, bool isVisible);

    const Clock _clock;
    BusConnection _bus;
    // Nothing while none is shown.
    std::optional<Time> _lastShown;
};
