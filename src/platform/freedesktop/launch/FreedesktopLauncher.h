// Starts desktop entries, AppImages and bundle folders, and asks the file browser of the session.

#pragma once

#include "platform/Launcher.h"

#include <functional>

class FreedesktopLauncher final : public Launcher
{
public:
    // `raise` brings the windows of an application that runs already to the front, and tells
    // whether there were any. It is asked before anything is started without documents, on the
    // thread that opens; without it every opening is a start. To be made before there are threads:
    // settles which session bus there is.
    explicit FreedesktopLauncher(std::function<bool(const QString &bundlePath)> raise = {});

    LaunchStatus open(
        const QString &bundlePath, const std::optional<QList<QUrl>> &documents) override;
    bool canOpenNewWindow(const QString &bundlePath) const override;
    LaunchStatus openNewWindow(const QString &bundlePath) override;
    bool reveal(const QString &path) override;

private:
    const std::function<bool(const QString &bundlePath)> _raise;
};
