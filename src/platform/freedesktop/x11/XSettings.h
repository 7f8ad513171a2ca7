// The settings that a daemon of the desktop hands to all programs on an X server.
// https://specifications.freedesktop.org/xsettings-spec/latest/
//
// They are read again only when they have changed since, and are then asked for.

#pragma once

#include "platform/freedesktop/x11/XSelection.h"

#include <QByteArray>
#include <QHash>

#include <optional>

class XSettings final : public QObject
{
    Q_OBJECT

public:
    // The connection is open, and outlives this.
    explicit XSettings(XConnection &connection);

    // Empty when it is not set, or is no number.
    std::optional<qint32> number(const QByteArray &name);

    // The numbers in what a daemon has written; what follows damage is left out.
    static QHash<QByteArray, qint32> numbersIn(const QByteArray &settings);

private:
    void handleEvent(const xcb_generic_event_t *event);
    void watchOwner();
    QByteArray read();

    XConnection &_connection;
    XSelection _manager;
    bool _isOutdated = true;
    QHash<QByteArray, qint32> _numbers;
};
