// Whether a program shows status items that register on the session bus:
// https://www.freedesktop.org/wiki/Specifications/StatusNotifierItem/
//
// Asking does not block, and starts no program.

#pragma once

#include "platform/freedesktop/bus/BusConnection.h"

#include <QDBusServiceWatcher>
#include <QObject>

#include <memory>

class NotifierSignals;
class QDBusPendingCallWatcher;

class NotifierHost final : public QObject
{
    Q_OBJECT

public:
    enum class State {
        // The registrar has not answered yet. To ask it anything might take long.
        Unknown,
        Absent,
        Present,
    };

    explicit NotifierHost(QObject *parent = nullptr);
    ~NotifierHost() override;

    State state() const { return _state; }

Q_SIGNALS:
    void stateChanged();

private:
    void ask();
    void take(QDBusPendingCallWatcher *answer);
    void setState(State state);

    BusConnection _bus;
    QDBusServiceWatcher _owners;
    std::unique_ptr<NotifierSignals> _signals;
    QDBusPendingCallWatcher *_question = nullptr;
    State _state = State::Unknown;
};
