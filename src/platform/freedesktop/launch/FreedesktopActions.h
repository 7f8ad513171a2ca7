// The actions that desktop entries list.

#pragma once

#include "platform/ApplicationActions.h"

class FreedesktopActions final : public ApplicationActions
{
public:
    QList<Action> actionsOf(const QString &bundlePath) const override;
    bool perform(const QString &bundlePath, const QString &actionId) override;
};
