#include "platform/freedesktop/live/FreedesktopLiveQuery.h"

#include <QThread>
#include <QTimerEvent>

#include <future>
#include <utility>

namespace {

// A disk that does not answer must not keep the program from ending.
constexpr std::chrono::seconds MaxShutdownWait(2);

} // namespace

class FreedesktopLiveQuery::Thread final : public QThread
{
public:
    // Begins with a query, so that the main thread need not wait until the thread runs.
    Thread(FreedesktopLiveQuery &owner, Scope scope, const QList<QStringList> &known)
        : _owner(owner)
        , _items(owner._items)
        , _limits(owner._limits)
        , _current(owner._current)
        , _number(*_current)
        , _scope(std::move(scope))
        , _known(known)
    {
        setObjectName(QStringLiteral("live query"));
        QThread::start();
    }
    void waitUntilReady() { _isReady.wait(); }
    Q_DISABLE_COPY_MOVE(Thread)

protected:
    void run() override
    {
        FolderQuery query(_items, _limits, *_current);
        connect(&query, &FolderQuery::didUpdate, &_owner, &FreedesktopLiveQuery::take);
        connect(&_owner, &FreedesktopLiveQuery::startWanted, &query, &FolderQuery::start);
        connect(&_owner, &FreedesktopLiveQuery::stopWanted, &query, &FolderQuery::stop);
        _ready.set_value();
        query.start(_number, std::exchange(_scope, {}), std::exchange(_known, {}));
        exec();
    }

private:
    FreedesktopLiveQuery &_owner;
    Items &_items;
    const FolderQuery::Limits _limits;
    const std::shared_ptr<std::atomic<int>> _current;
    const int _number;
    Scope _scope;
    QList<QStringList> _known;
    std::promise<void> _ready;
    std::future<void> _isReady = _ready.get_future();
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
        _thread = std::make_unique<Thread>(*this, scope, known);
        return;
    }
    _thread->waitUntilReady();
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
