// Has a job done on a thread of its own, shortly after the last of several requests: for a file
// that changes in bursts and takes longer to write than an event loop may be held up.
//
// One job runs at a time, and its result returns to the main thread. Everything but the job itself
// happens there. The thread does not outlive the object.

#pragma once

#include <QDeadlineTimer>
#include <QObject>
#include <QThreadPool>
#include <QTimer>

#include <functional>
#include <mutex>

class WriteBehind final : public QObject
{
    Q_OBJECT

public:
    // What remains to be done on the main thread after a job.
    using Conclusion = std::function<void()>;
    // Uses copies of what the main thread has.
    using Job = std::function<Conclusion()>;

    // Asks for the job when it is due; a null one means that nothing needs doing.
    explicit WriteBehind(std::function<Job()> nextJob, QObject *parent = nullptr);
    // Waits for a running job and drops its conclusion: the owner calls flush() first.
    ~WriteBehind() override;

    // The job is due 200 ms after the last request and at most a second after the first. Without an
    // application, and so without timers, it waits for flush().
    void request();

    // Waits for a running job and concludes it, then does what was requested, all before it
    // returns. A requested job runs on the calling thread.
    void flush();

private:
    void start();
    void run();
    void conclude();

    std::function<Job()> _nextJob;
    QTimer _delay;
    QDeadlineTimer _latest;
    bool _isRequested = false;
    bool _isRunning = false;

    // Shared with the thread.
    std::mutex _mutex;
    Job _job;
    Conclusion _conclusion;

    QThreadPool _thread;
};
