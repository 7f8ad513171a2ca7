// The text of autostart entries: one of our own, and changes to any that leave the rest of it as it
// stands.

#pragma once

#include "platform/LoginItems.h"

#include <QByteArray>

#include <optional>
#include <string_view>

namespace AutostartText {

// The whole of an entry for the item.
QByteArray entryFor(const LoginItem &item);

// The value of Exec that starts the item's program with its arguments, whatever characters are in
// them.
QByteArray commandLine(const LoginItem &item);

// The text with this value in place of all that its main group has for the key; without any value
// for it where none is given. The value is written as it is. A text without a main group stays as
// it is.
QByteArray withValue(
    const QByteArray &text, std::string_view key, const std::optional<QByteArray> &value);

} // namespace AutostartText
