// The time during which no window is active. Between two windows a window manager names none for a
// moment; when the timer runs out, none is in front.

#pragma once

#include <QTimer>

#include <chrono>

class NoneActive final : public QTimer
{
public:
    static constexpr std::chrono::milliseconds LongestMoment { 100 };

    NoneActive()
    {
        setSingleShot(true);
        setInterval(LongestMoment);
    }

    // Goes on where it runs already.
    void begin()
    {
        if (!isActive()) {
            start();
        }
    }
};
