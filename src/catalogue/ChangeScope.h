// Announces that lists change, for as long as it lives: before when it is made, after when it goes.

#pragma once

#include "catalogue/OTAppManager.h"

class OTAppManager::ChangeScope
{
public:
    ChangeScope(OTAppManager &manager, const QStringList &keys)
        : _manager(manager)
        , _keys(keys)
    {
        for (const QString &key : _keys) {
            Q_EMIT _manager.willChange(key);
        }
    }
    ~ChangeScope()
    {
        for (const QString &key : _keys) {
            Q_EMIT _manager.didChange(key);
        }
    }
    Q_DISABLE_COPY_MOVE(ChangeScope)

private:
    OTAppManager &_manager;
    QStringList _keys;
};
