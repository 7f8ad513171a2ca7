// The preferences of what summons the panel.

#pragma once

#include <QString>

namespace TriggerKeys {

inline const QString cursorHotSpotLocation = QStringLiteral("cursorHotSpotLocation");
inline const QString hotKeyCode = QStringLiteral("hotKeyCode");
inline const QString hotKeyModifiers = QStringLiteral("hotKeyModifiers");
inline const QString showAppInStatusBar = QStringLiteral("showAppInStatusBar");
inline const QString statusBarTogglesWindow = QStringLiteral("statusBarTogglesWindow");

} // namespace TriggerKeys
