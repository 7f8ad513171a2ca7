#include "support/files/WriteBehind.h"

#include <QCoreApplication>

#include <algorithm>
#include <chrono>
#include <utility>

using namespace std::chrono_literals;

namespace {

constexpr std::chrono::milliseconds UsualDelay = 200ms;
constexpr std::chrono::milliseconds LongestDelay = 1s;

} // namespace

WriteBehind::WriteBehind(std::function<Job()> nextJob, QObject *parent)
    : QObject(parent)
    , _nextJob(std::move(nextJob))
{
    _thread.setMaxThreadCount(1);
    _delay.setSingleShot(true);
    connect(&_delay, &QTimer::timeout, this, &WriteBehind::start);
}

WriteBehind::~WriteBehind()
{
    _thread.waitForDone();
}

void WriteBehind::request()
{
    if (!std::exchange(_isRequested, true)) {
        _latest.setRemainingTime(LongestDelay);
    }
    if (QCoreApplication::instance()) {
        _delay.start(std::min(UsualDelay, std::chrono::milliseconds(_latest.remainingTime())));
    }
}

void WriteBehind::start()
{
    if (_isRunning) {
        _delay.start(UsualDelay);
        return;
    }
    _isRequested = false;
    Job job = _nextJob();
    if (!job) {
        return;
    }
    _isRunning = true;
    {
        const std::lock_guard lock(_mutex);
        _job = std::move(job);
    }
    _thread.start([this] { run(); });
}

void WriteBehind::run()
{
    Job job;
    {
        const std::lock_guard lock(_mutex);
        job = std::exchange(_job, {});
    }
    Conclusion conclusion = job();
    const std::lock_guard lock(_mutex);
    _conclusion = std::move(conclusion);
    QMetaObject::invokeMethod(this, &WriteBehind::conclude, Qt::QueuedConnection);
}

// Finds nothing to do when flush() was quicker.
void WriteBehind::conclude()
{
    Conclusion conclusion;
    {
        const std::lock_guard lock(_mutex);
        conclusion = std::exchange(_conclusion, {});
    }
    if (conclusion) {
        _isRunning = false;
        conclusion();
    }
}

void WriteBehind::flush()
{
    _thread.waitForDone();
    conclude();
    if (!std::exchange(_isRequested, false)) {
        return;
    }
    _delay.stop();
    if (const Job job = _nextJob()) {
        job()();
    }
}
