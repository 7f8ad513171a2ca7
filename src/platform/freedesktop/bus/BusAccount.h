// The user's e-mail address as AccountsService has it on the system bus; where it has none, that of
// the environment variable EMAIL.

#pragma once

#include "platform/Account.h"

class BusAccount final : public Account
{
public:
    void findEmailAddresses(QObject *context, const Receiver &receiver) const override;
};
