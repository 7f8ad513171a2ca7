// Runs what may wait for another program, such as a launch, on threads of its own: one that waits
// for a slow program holds up no other.

#pragma once

#include <QThreadPool>

#include <functional>
#include <memory>

class LaunchQueue final
{
public:
    LaunchQueue();
    // Waits a second at most. QThreadPool itself would wait for as long as a launch hangs, and this
    // program could not end; what has not finished by then is left behind and ends with the
    // process.
    ~LaunchQueue();
    Q_DISABLE_COPY_MOVE(LaunchQueue)

    // The function must not use what ends before the program does.
    void start(std::function<void()> function) { _threads->start(std::move(function)); }

private:
    std::unique_ptr<QThreadPool> _threads = std::make_unique<QThreadPool>();
};
