// Applications controlled through their windows, by what window managers are asked for that.

#pragma once

#include "platform/ApplicationControl.h"

class RunningWindows;

class WindowControl final : public ApplicationControl
{
public:
    // The windows outlive this.
    explicit WindowControl(RunningWindows &windows)
        : _windows(windows)
    { }

    std::optional<RunningProcess> processOf(const QString &bundlePath) const override;
    bool isVisible(const QString &bundlePath) const override;
    void show(const QString &bundlePath) override;
    // Iconifies every window.
    void hide(const QString &bundlePath) override;
    bool activate(const QString &bundlePath) override;
    // Closes every window that says how it wants to be closed. Nothing is killed.
    void quit(const QString &bundlePath) override;

private:
    RunningWindows &_windows;
};
