#include "grid/LaunchQueue.h"

namespace {

constexpr int MostLaunches = 32;
constexpr int LongestWait = 1000; // milliseconds

} // namespace

LaunchQueue::LaunchQueue()
{
    _threads->setMaxThreadCount(MostLaunches);
}

LaunchQueue::~LaunchQueue()
{
    if (!_threads->waitForDone(LongestWait)) {
        static_cast<void>(_threads.release());
    }
}
