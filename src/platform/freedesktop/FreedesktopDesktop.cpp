#include "platform/freedesktop/FreedesktopDesktop.h"

#include "platform/freedesktop/DesktopEntryIndex.h"
#include "platform/freedesktop/DisplayCompositing.h"
#include "platform/freedesktop/FreedesktopActions.h"
#include "platform/freedesktop/FreedesktopDocuments.h"
#include "platform/freedesktop/FreedesktopIcons.h"
#include "platform/freedesktop/FreedesktopItems.h"
#include "platform/freedesktop/FreedesktopLauncher.h"
#include "platform/freedesktop/FreedesktopPaths.h"
#include "platform/freedesktop/Languages.h"
#include "platform/freedesktop/RunningWindows.h"
#include "platform/freedesktop/WindowControl.h"

#include <atomic>

namespace {

QStringList currentDesktops()
{
    return qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(QLatin1Char(':'), Qt::SkipEmptyParts);
}

class FreedesktopDesktop final : public Desktop
{
public:
    const SearchPaths &searchPaths() const override { return _paths; }
    Items &items() override { return _items; }
    IconProvider &icons() override { return _icons; }
    Launcher &launcher() override { return _launcher; }
    const Documents &documents() const override { return _documents; }
    RunningApplications &runningApplications() override { return windows(); }
    ApplicationControl &applicationControl() override
    {
        windows();
        return *_control;
    }
    ApplicationActions &applicationActions() override { return _actions; }
    const Compositing &compositing() const override { return _compositing; }

private:
    // Made when they are first asked for: many a run has no use for the display.
    RunningWindows &windows()
    {
        if (!_windows) {
            _windows =
                std::make_unique<RunningWindows>(_entries, _paths.dataFolders(), currentDesktops());
            _control = std::make_unique<WindowControl>(*_windows);
            _raisable = _windows.get();
        }
        return *_windows;
    }
    bool raise(const QString &bundlePath) const
    {
        RunningWindows *const windows = _raisable;
        return windows != nullptr && windows->raise(bundlePath);
    }

    FreedesktopPaths _paths;
    DesktopEntryIndex _entries { Languages::preferred() };
    FreedesktopItems _items { _entries, _paths.dataFolders(), currentDesktops() };
    FreedesktopIcons _icons { [this](const QString &path) { return _items.iconNameOf(path); } };
    FreedesktopDocuments _documents;
    FreedesktopActions _actions;
    DisplayCompositing _compositing;
    std::unique_ptr<RunningWindows> _windows;
    std::unique_ptr<WindowControl> _control;
    // For launches, which have threads of their own.
    std::atomic<RunningWindows *> _raisable = nullptr;
    FreedesktopLauncher _launcher { [this](const QString &path) { return raise(path); } };
};

} // namespace

std::unique_ptr<Desktop> makeFreedesktopDesktop()
{
    quietImageLibraries();
    return std::make_unique<FreedesktopDesktop>();
}
