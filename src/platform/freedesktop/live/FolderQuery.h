// A query on its thread: waits for what the kernel tells, and works out what has become of the
// results.
//
// While nothing happens nothing runs, unless watches are short; then everything is looked at again
// every `pollInterval`.

#pragma once

#include "platform/freedesktop/live/WatchedFolders.h"

#include <QObject>
#include <QTimer>

#include <atomic>
#include <chrono>
#include <memory>

class QSocketNotifier;

class FolderQuery final : public QObject
{
    Q_OBJECT

public:
    struct Limits
    {
        // Those of a user are shared by all programs, and far more folders than any that hold
        // applications.
        qsizetype watches = 8'000;
        std::chrono::milliseconds pollInterval = std::chrono::seconds(30);
    };

    // `current` is the number of the query that is wanted, and may be changed by any thread; both
    // it and the items outlive this.
    FolderQuery(Items &items, const Limits &limits, const std::atomic<int> &current);
    ~FolderQuery() override;

    void start(int number, const LiveQuery::Scope &scope, const QList<QStringList> &known);
    void stop();

Q_SIGNALS:
    // Never empty.
    void didUpdate(int number, const QList<LiveQuery::Update> &parts);

private:
    bool isStale() const { return _number != _current; }
    void lookAtTouched();
    void compareWith(const QList<QStringList> &known);
    void wait();
    void tell(const ChangeSet &changes, bool isIncomplete);

    Items &_items;
    const Limits _limits;
    const std::atomic<int> &_current;
    int _number = 0;
    std::unique_ptr<WatchedFolders> _folders;
    std::unique_ptr<QSocketNotifier> _events;
    std::unique_ptr<QSocketNotifier> _mounts;
    int _mountTable;
    QTimer _settling;
    QTimer _poll;
    bool _isShortageTold = false;
};
