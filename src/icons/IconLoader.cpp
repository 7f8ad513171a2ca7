#include "icons/IconLoader.h"

#include "icons/Log.h"
#include "platform/IconProvider.h"

#include <QElapsedTimer>
#include <QMutexLocker>

#include <utility>

namespace {

// Half of what a frame of an animation may take; the rest is for painting what arrived.
constexpr qint64 LongestTurnInNanoseconds = 4'000'000;

} // namespace

IconLoadOperation::IconLoadOperation(const QString &path, const IconParameters &iconParameters,
    std::function<void(const QImage &)> iconReceiver)
    : filePath(path)
    , iconSize(iconParameters.iconSize())
    , receiver(std::move(iconReceiver))
{ }

IconLoader::IconLoader(QObject *parent)
    : QObject(parent)
{
    _queue.setMaxThreadCount(Width);
}

IconLoader::~IconLoader()
{
    cancelAll();
}

IconLoader &IconLoader::sharedIconLoader()
{
    static IconLoader loader;
    return loader;
}

void IconLoader::addOperation(IconLoadOperation operation, const IconProvider &provider)
{
    ++_pendingCount;
    _queue.start([this, operation = std::move(operation), &provider] { run(operation, provider); });
}

void IconLoader::run(const IconLoadOperation &operation, const IconProvider &provider)
{
    const IconSource source = provider.resolve(operation.filePath, operation.iconSize);
    QImage image;
    if (source.isNull()) {
        qCWarning(lcIcons, "IconLoader::run Error loading icon for path: %s",
            qUtf8Printable(operation.filePath));
    } else {
        image = provider.decode(source, operation.iconSize);
    }
    deliver(operation, image, image.isNull() ? Handing::DoesNotWait : Handing::Waits);
}

void IconLoader::deliver(const IconLoadOperation &operation, const QImage &image, Handing handing)
{
    QMutexLocker lock(&_mutex);
    if (_isStopping) {
        return;
    }
    const quint64 ticket = ++_lastTicket;
    _delivered.push_back({ ticket, image, operation.receiver });
    if (!_isWakeUpPosted) {
        _isWakeUpPosted = true;
        QMetaObject::invokeMethod(this, &IconLoader::takeDelivered, Qt::QueuedConnection);
    }
    while (handing == Handing::Waits && !_isStopping && _lastTaken < ticket) {
        _taken.wait(&_mutex);
    }
}

void IconLoader::takeDelivered()
{
    QElapsedTimer turn;
    turn.start();
    QMutexLocker lock(&_mutex);
    _isWakeUpPosted = false;
    const bool isAnythingDelivered = !_delivered.empty();
    while (!_delivered.empty()) {
        if (turn.nsecsElapsed() > LongestTurnInNanoseconds) {
            _isWakeUpPosted = true;
            QMetaObject::invokeMethod(this, &IconLoader::takeDelivered, Qt::QueuedConnection);
            break;
        }
        const Delivery delivery = std::move(_delivered.front());
        _delivered.pop_front();
        lock.unlock();
        --_pendingCount;
        delivery.receiver(delivery.image);
        lock.relock();
        _lastTaken = qMax(_lastTaken, delivery.ticket);
        _taken.wakeAll();
    }
    lock.unlock();
    if (isAnythingDelivered && _pendingCount == 0) {
        Q_EMIT finished();
    }
}

void IconLoader::cancelAll()
{
    _queue.clear();
    {
        QMutexLocker lock(&_mutex);
        _isStopping = true;
        _delivered.clear();
        _taken.wakeAll();
    }
    _queue.waitForDone();
    QMutexLocker lock(&_mutex);
    _isStopping = false;
    _pendingCount = 0;
}
