// The queue in which icons are loaded: eight at a time, in the order in which they were asked for.
//
// An operation resolves and decodes one icon on a thread of the queue and hands it to its receiver
// on the main thread; until the receiver has run, that thread waits, so that loading never runs far
// ahead of what is done with the icons. A failure is handed over without waiting. Icons that are
// ready together are handed over in one turn of the event loop, but no turn goes on longer than a
// few milliseconds.
//
// The loader is used from the main thread. It knows no applications: a receiver that may die
// captures a weak handle.

#pragma once

#include "icons/IconParameters.h"

#include <QImage>
#include <QMutex>
#include <QObject>
#include <QString>
#include <QThreadPool>
#include <QWaitCondition>

#include <deque>
#include <functional>

class IconProvider;

// One icon to load.
struct IconLoadOperation
{
    QString filePath;
    int iconSize = 0;
    // Called on the main thread, with a null image when the bundle has no icon.
    std::function<void(const QImage &)> receiver;

    IconLoadOperation(const QString &path, const IconParameters &iconParameters,
        std::function<void(const QImage &)> iconReceiver);
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
    // either.
    void cancelAll();

Q_SIGNALS:
    // The last pending operation has been handed over.
    void finished();

private:
    struct Delivery
    {
        quint64 ticket = 0;
        QImage image;
        std::function<void(const QImage &)> receiver;
    };

    enum class Handing { Waits, DoesNotWait };

    void run(const IconLoadOperation &operation, const IconProvider &provider);
    void deliver(const IconLoadOperation &operation, const QImage &image, Handing handing);
    void takeDelivered();
    void release(quint64 taken, std::deque<Delivery> &rest);

    QThreadPool _queue;
    int _pendingCount = 0;
    // How often everything was cancelled, so that a turn notices it when a receiver does so.
    quint64 _cancellations = 0;

    // Shared with the threads of the queue.
    QMutex _mutex;
    QWaitCondition _taken;
    std::deque<Delivery> _delivered;
    quint64 _lastTicket = 0;
    quint64 _lastTaken = 0;
    bool _isWakeUpPosted = false;
    bool _isStopping = false;
};
