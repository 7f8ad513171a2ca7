// What starts of the program say to each other, as messages on the bus.
//
// The words are those that desktops use too when a program can be started by the bus:
// https://specifications.freedesktop.org/desktop-entry-spec/latest/dbus.html
// Only the status is our own.

#pragma once

#include "platform/SingleInstance.h"

#include <QDBusMessage>
#include <QVariantMap>

#include <optional>

namespace InstanceMessage {

inline constexpr const char *service = "org.ortu.Ortu";
inline constexpr const char *path = "/org/ortu/Ortu";
inline constexpr const char *applicationInterface = "org.freedesktop.Application";
inline constexpr const char *ownInterface = "org.ortu.Ortu";

// The call that asks the running program. It does not make the bus start one. Carries what the
// environment says where the request has no stamp.
QDBusMessage callFor(const InstanceRequest &request);

// Of ActivateAction. Nothing for a name that is none.
std::optional<InstanceRequest::Verb> verbOf(const QString &action);

// Leaves out what is not an absolute URI.
QList<QUrl> filesOf(const QStringList &uris);

// Whatever is of another type or out of proportion counts as absent.
ActivationStamp stampOf(const QVariantMap &platformData);

} // namespace InstanceMessage
