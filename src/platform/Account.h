// What the system knows about its user. The base class knows nothing.

#pragma once

#include <QStringList>

#include <functional>

class QObject;

class Account
{
public:
    using Receiver = std::function<void(const QStringList &addresses)>;

    Account() = default;
    virtual ~Account() = default;
    Q_DISABLE_COPY_MOVE(Account)

    // Looks up the user's own e-mail addresses, the preferred one first, and hands them over from
    // the event loop, or at once; never when `context` has ended, nor when there are none.
    virtual void findEmailAddresses(QObject * /*context*/, const Receiver & /*receiver*/) const { }
};
