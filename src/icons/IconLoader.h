// The queue in which icons are loaded and measured: eight at a time, in the order in which they
// were asked for, all that is to be loaded before all that is to be measured.
//
// An operation resolves and decodes one icon on a thread of the queue and hands it to its receiver
// on the main thread; until the receiver has run, that thread waits, so that loading never runs far
// ahead of what is done with the icons, nor takes the processor from the thread that paints. A
// failure is handed over without waiting. What is ready together is handed over in one turn of the
// event loop, but no turn goes on longer than a few milliseconds.
//
// The loader is used from the main thread. It knows no applications: a receiver that may die
// captures a weak handle.

#pragma once

#include "icons/IconMeasurement.h"
#include "icons/IconParameters.h"

#include <QImage>
#include <QObject>
#include <QString>
#include <QThreadPool>
#include <QTimer>

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>

class IconProvider;

// What an operation comes back with.
struct LoadedIcon
{
    // Null when the bundle has no icon.
    QImage image;
    // Of an operation that measures.
    IconMeasurement measurement;
};

// One icon to load, or to measure.
struct IconLoadOperation
{
    // Called on the main thread.
    using Receiver = std::function<void(LoadedIcon)>;

    QString filePath;
    // Edge of the icon to load, in pixels.
    int size = 0;
    // The icon to measure; null to load one.
    QImage image;
    IconParameters parameters;
    Receiver receiver;

    // Loads the icon of the bundle at a path.
    IconLoadOperation(
        const QString &path, const IconParameters &iconParameters, Receiver iconReceiver);
    // The same in a size of its own, for a screen of more pixels than points.
    IconLoadOperation(const QString &path, int iconSize, Receiver iconReceiver);
    // Measures an icon.
    IconLoadOperation(
        const QImage &icon, const IconParameters &iconParameters, Receiver iconReceiver);
};

class IconLoader : public QObject
{
    Q_OBJECT

public:
    static constexpr int Width = 8;

    explicit IconLoader(QObject *parent = nullptr);
    ~IconLoader() override;

    // The loader that the whole program shares.
    static IconLoader &sharedIconLoader();

    // Queues an operation. The provider must live until the operation has ended or cancelAll() was
    // called.
    void addOperation(IconLoadOperation operation, const IconProvider &provider);

    // Operations whose receiver has not run yet.
    int pendingCount() const { return _pendingCount; }

    // Drops what is queued, waits for the icons that are being decoded, and calls no receiver of
    // either. False when one of them has not ended after a quarter of a second: it goes on, and
    // its provider must live until isBusy() is false.
    bool cancelAll();

    // An icon is being loaded or measured, cancelled or not. The destructor waits until none is.
    bool isBusy() const { return _queue.activeThreadCount() > 0; }

Q_SIGNALS:
    // The last pending operation has been handed over.
    void finished();

private:
    struct Delivery
    {
        quint64 ticket = 0;
        LoadedIcon icon;
        IconLoadOperation::Receiver receiver;
    };

    enum class Handing { Waits, DoesNotWait };

    void run(
        const IconLoadOperation &operation, const IconProvider &provider, quint64 cancellations);
    void deliver(const IconLoadOperation &operation, LoadedIcon icon, Handing handing,
        quint64 cancellations);
    void takeDelivered();
    void release(quint64 taken, std::deque<Delivery> &rest);

    QThreadPool _queue;
    QTimer _nextTurn;
    int _pendingCount = 0;

    // Shared with the threads of the queue.
    std::mutex _mutex;
    std::condition_variable _taken;
    std::deque<Delivery> _delivered;
    quint64 _lastTicket = 0;
    quint64 _lastTaken = 0;
    // A turn goes on or is to come.
    bool _isAwake = false;
    // How often everything was cancelled. An operation of another count than this is
    // dropped, and a turn notices when a receiver cancels. Written on the main thread only.
    quint64 _cancellations = 0;
};
