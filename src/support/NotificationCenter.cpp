#include "support/NotificationCenter.h"

#include <QTimerEvent>

#include <utility>

namespace {

NotificationCenter *replacement = nullptr;

} // namespace

NotificationCenter::~NotificationCenter()
{
    if (replacement == this) {
        replacement = nullptr;
    }
}

NotificationCenter &NotificationCenter::defaultCenter()
{
    static NotificationCenter own;
    return replacement ? *replacement : own;
}

void NotificationCenter::setDefaultCenter(NotificationCenter *center)
{
    replacement = center;
}

void NotificationCenter::postWhenIdle(Notification notification)
{
    if (!_pending.contains(notification)) {
        _pending.append(notification);
    }
    // The event loop comes to a timer without interval when no posted event is left.
    if (!_idle.isActive()) {
        _idle.start(0, this);
    }
}

void NotificationCenter::timerEvent(QTimerEvent *event)
{
    if (event->timerId() != _idle.timerId()) {
        return QObject::timerEvent(event);
    }
    _idle.stop();
    // What a receiver posts meanwhile waits for the next turn.
    const QList<Notification> pending = std::exchange(_pending, {});
    for (const Notification notification : pending) {
        Q_EMIT(this->*notification)();
    }
}
