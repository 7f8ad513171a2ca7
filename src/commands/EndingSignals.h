// Ends the event loop on a signal that asks the program to end (SIGTERM, SIGHUP, SIGINT), as at the
// end of a session, so that what is not written yet is.
//
// A second one of a kind ends the program at once: it may not get to its event loop any more. Only
// one object is active at a time. Main thread only.

#pragma once

#include <QSocketNotifier>

#include <array>
#include <memory>

class EndingSignals final
{
public:
    // Leaves alone a signal that is ignored.
    EndingSignals();
    ~EndingSignals();
    Q_DISABLE_COPY_MOVE(EndingSignals)

private:
    // A pipe, from the signal handler to the main thread; -1 when there is none.
    std::array<int, 2> _ends { -1, -1 };
    std::unique_ptr<QSocketNotifier> _notifier;
};
