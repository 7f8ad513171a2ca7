#include "icons/IconLoader.h"

#include "icons/store/IconStore.h"
#include "platform/IconProvider.h"

#include <QElapsedTimer>
#include <QSocketNotifier>

#include <iterator>
#include <utility>

namespace {

// Half of what a frame of an animation may take; the rest is for painting what arrived.
constexpr qint64 LongestTurnInNanoseconds = 4'000'000;

// Icons take some milliseconds; what takes longer may wait for a disk that does not answer.
constexpr int MaxCancelWaitInMilliseconds = 250;

// The grid is complete when all icons are loaded; their colours can wait.
constexpr int LoadingPriority = 1;
constexpr int MeasuringPriority = 0;

} // namespace

IconLoadOperation::IconLoadOperation(
    const QString &path, const IconParameters &iconParameters, Receiver iconReceiver)
    : filePath(path)
    , size(iconParameters.iconSize())
    , parameters(iconParameters)
    , receiver(std::move(iconReceiver))
{ }

IconLoadOperation::IconLoadOperation(const QString &path, int iconSize, Receiver iconReceiver)
    : filePath(path)
    , size(iconSize)
    , receiver(std::move(iconReceiver))
{ }

IconLoadOperation::IconLoadOperation(
    const QImage &icon, const IconParameters &iconParameters, Receiver iconReceiver)
    : image(icon)
    , parameters(iconParameters)
    , receiver(std::move(iconReceiver))
{ }

IconLoader::IconLoader(QObject *parent)
    : QObject(parent)
{
    _queue.setMaxThreadCount(Width);
    _nextTurn.setSingleShot(true);
    connect(&_nextTurn, &QTimer::timeout, this, &IconLoader::takeDelivered);
    _checkDelay.setSingleShot(true);
    _checkDelay.setInterval(CheckDelay);
    connect(&_checkDelay, &QTimer::timeout, this, &IconLoader::checkHanded);
    _keepDelay.setSingleShot(true);
    _keepDelay.setInterval(KeepDelay);
    connect(&_keepDelay, &QTimer::timeout, this, &IconLoader::keepNewIcons);
}

IconLoader::~IconLoader()
{
    cancelAll();
    // Its threads use members that are destroyed before it.
    _queue.waitForDone();
}

IconLoader &IconLoader::sharedIconLoader()
{
    static IconLoader loader;
    return loader;
}

void IconLoader::addOperation(IconLoadOperation operation, const IconProvider &provider)
{
    if (operation.image.isNull() && isAtHand(operation, provider)) {
        return;
    }
    ++_pendingCount;
    const int priority = operation.image.isNull() ? LoadingPriority : MeasuringPriority;
    _queue.start([this, operation = std::move(operation), &provider, store = storeFor(provider),
                     cancellations =
                         _cancellations] { run(operation, provider, store.get(), cancellations); },
        priority);
}

void IconLoader::run(const IconLoadOperation &operation, const IconProvider &provider,
    IconStore *store, quint64 cancellations)
{
    LoadedIcon icon { operation.image, {} };
    if (icon.image.isNull()) {
        icon = IconFetch::load(operation.filePath, operation.size, provider, store);
    } else {
        icon.measurement = measureIcon(icon.image, operation.parameters);
        if (store != nullptr) {
            store->keepColors(icon.image.cacheKey(), icon.measurement.colors,
                { icon.measurement.minSaturation, icon.measurement.minLuminosity });
        }
    }
    const Handing handing = icon.image.isNull() ? Handing::DoesNotWait : Handing::Waits;
    deliver(operation, std::move(icon), handing, cancellations);
}

void IconLoader::deliver(
    const IconLoadOperation &operation, LoadedIcon icon, Handing handing, quint64 cancellations)
{
    std::unique_lock lock(_mutex);
    if (cancellations != _cancellations) {
        return;
    }
    const quint64 ticket = ++_lastTicket;
    _delivered.push_back({ ticket, std::move(icon), operation.receiver });
    if (!_isAwake) {
        _isAwake = true;
        QMetaObject::invokeMethod(this, &IconLoader::takeDelivered, Qt::QueuedConnection);
    }
    while (handing == Handing::Waits && cancellations == _cancellations && _lastTaken < ticket) {
        _taken.wait(lock);
    }
}

// Everything that is ready is taken at once and its threads are woken together: waking them one by
// one costs more than handing over an icon.
void IconLoader::takeDelivered()
{
    std::deque<Delivery> ready;
    {
        const std::lock_guard lock(_mutex);
        ready.swap(_delivered);
        _isAwake = !ready.empty();
    }
    if (ready.empty()) {
        return;
    }
    QElapsedTimer turn;
    turn.start();
    const quint64 cancellations = _cancellations;
    quint64 taken = 0;
    while (!ready.empty() && turn.nsecsElapsed() <= LongestTurnInNanoseconds) {
        Delivery delivery = std::move(ready.front());
        ready.pop_front();
        taken = delivery.ticket;
        --_pendingCount;
        delivery.receiver(std::move(delivery.icon));
        if (_cancellations != cancellations) {
            return;
        }
    }
    release(taken, ready);
    if (_pendingCount == 0) {
        if (_store) {
            _keepDelay.start();
        }
        Q_EMIT finished();
    }
}

// Lets the threads go whose icons were taken, and keeps the rest for the next turn. That one comes
// by a timer: an event posted now would be handled before the event loop gets to paint.
void IconLoader::release(quint64 taken, std::deque<Delivery> &rest)
{
    const std::lock_guard lock(_mutex);
    _delivered.insert(_delivered.begin(), std::make_move_iterator(rest.begin()),
        std::make_move_iterator(rest.end()));
    _isAwake = !_delivered.empty();
    if (_isAwake) {
        _nextTurn.start();
    }
    _lastTaken = taken;
    _taken.notify_all();
}

bool IconLoader::cancelAll()
{
    _queue.clear();
    {
        const std::lock_guard lock(_mutex);
        ++_cancellations;
        _delivered.clear();
        _isAwake = false;
        _taken.notify_all();
    }
    _nextTurn.stop();
    _areChecksCut = _areChecksCut || areChecksDue();
    _handed.clear();
    _checkCount = 0;
    _pendingCount = 0;
    return _queue.waitForDone(MaxCancelWaitInMilliseconds);
}
