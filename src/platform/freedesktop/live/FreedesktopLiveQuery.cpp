#include "platform/freedesktop/live/FreedesktopLiveQuery.h"

#include <QThread>
#include <QTimerEvent>

#include <future>

namespace {

// A disk that does not answer must not keep the program from ending.
constexpr std::chrono::seconds MaxShutdownWait(2);

} // namespace

class FreedesktopLiveQuery::Thread final : public QThread
{
public:
    Thread(FreedesktopLiveQuery &owner, std::shared_ptr<std::atomic<int>> current)
        : _owner(owner)
        , _items(owner._items)
        , _limits(owner._limits)
        , _current(std::move(current))
    {
        setObjectName(QStringLiteral("live query"));
        QThread::start();
        _isReady.get_future().wait();
    }
    Q_DISABLE_COPY_MOVE(Thread)

protected:
    void run() override
    {
        FolderQuery query(_items, _limits, *_current);
        connect(&query, &FolderQuery::didUpdate, &_owner, &FreedesktopLiveQuery::take);
        connect(&_owner, &FreedesktopLiveQuery::startWanted, &query, &FolderQuery::start);
        connect(&_owner, &FreedesktopLiveQuery::stopWanted, &query, &FolderQuery::stop);
        _isReady.set_value();
        exec();
    }

private:
    FreedesktopLiveQuery &_owner;
    Items &_items;
    const FolderQuery::Limits _limits;
    const std::shared_ptr<std::atomic<int>> _current;
    std::promise<void> _isReady;
};

FreedesktopLiveQuery::FreedesktopLiveQuery(Items &items, const FolderQuery::Limits &limits)
    : _items(items)
    , _limits(limits)
{ }

FreedesktopLiveQuery::~FreedesktopLiveQuery()
{
    ++*_current;
    if (_thread) {
        _thread->quit();
        if (!_thread->wait(QDeadlineTimer(MaxShutdownWait))) {
            // Left to the end of the program.
            static_cast<void>(_thread.release());
        }
    }
}

void FreedesktopLiveQuery::start(const Scope &scope, const QList<QStringList> &known)
{
    stop();
    if (!_thread) {
        _thread = std::make_unique<Thread>(*this, _current);
    }
    Q_EMIT startWanted(*_current, scope, known);
}

void FreedesktopLiveQuery::stop()
{
    ++*_current;
    _waiting.clear();
    _turn.stop();
    Q_EMIT stopWanted();
}

void FreedesktopLiveQuery::take(int number, const QList<Update> &parts)
{
    if (number == *_current) {
        _waiting += parts;
        _turn.start(0, this);
    }
}

void FreedesktopLiveQuery::timerEvent(QTimerEvent *event)
{
    if (event->timerId() != _turn.timerId()) {
        LiveQuery::timerEvent(event);
        return;
    }
    const Update update = _waiting.takeFirst();
    if (_waiting.isEmpty()) {
        _turn.stop();
    }
    Q_EMIT didUpdate(update);
}
