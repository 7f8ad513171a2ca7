// The query of a freedesktop system: a thread of its own watches the folders, however many they are
// and however slow their disk is.

#pragma once

#include "platform/freedesktop/live/FolderQuery.h"

#include <QBasicTimer>

class FreedesktopLiveQuery final : public LiveQuery
{
    Q_OBJECT

public:
    // The items outlive this.
    explicit FreedesktopLiveQuery(Items &items, const FolderQuery::Limits &limits = {});
    ~FreedesktopLiveQuery() override;

    void start(const Scope &scope, const QList<QStringList> &known) override;
    void stop() override;

Q_SIGNALS:
    // For the query on the thread.
    void startWanted(int number, const LiveQuery::Scope &scope, const QList<QStringList> &known);
    void stopWanted();

protected:
    // One update a turn of the event loop.
    void timerEvent(QTimerEvent *event) override;

private:
    class Thread;

    void take(int number, const QList<Update> &parts);

    Items &_items;
    const FolderQuery::Limits _limits;
    // Of the query that is wanted.
    std::shared_ptr<std::atomic<int>> _current = std::make_shared<std::atomic<int>>(0);
    std::unique_ptr<Thread> _thread;
    QList<Update> _waiting;
    QBasicTimer _turn;
};
