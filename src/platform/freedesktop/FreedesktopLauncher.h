// Starts desktop entries, AppImages and bundle folders, and asks the file browser of the session.

#pragma once

#include "platform/Launcher.h"

class FreedesktopLauncher final : public Launcher
{
public:
    LaunchStatus open(
        const QString &bundlePath, const std::optional<QList<QUrl>> &documents) override;
    bool reveal(const QString &path) override;
};
