#include "platform/freedesktop/FreedesktopDesktop.h"

#include "platform/freedesktop/DesktopMotion.h"
#include "platform/freedesktop/TrayStatusItem.h"
#include "platform/freedesktop/base/FreedesktopPaths.h"
#include "platform/freedesktop/base/Languages.h"
#include "platform/freedesktop/base/ProcessMemory.h"
#include "platform/freedesktop/base/SessionFolders.h"
#include "platform/freedesktop/bus/BusAccount.h"
#include "platform/freedesktop/bus/BusInstance.h"
#include "platform/freedesktop/bus/LauncherProgress.h"
#include "platform/freedesktop/bus/PortalHotKey.h"
#include "platform/freedesktop/entries/EntryReading.h"
#include "platform/freedesktop/entries/FreedesktopDocuments.h"
#include "platform/freedesktop/entries/FreedesktopItems.h"
#include "platform/freedesktop/icons/FreedesktopIcons.h"
#include "platform/freedesktop/input/XDragWatch.h"
#include "platform/freedesktop/input/XHotKey.h"
#include "platform/freedesktop/input/XHotSpot.h"
#include "platform/freedesktop/input/XModifierTap.h"
#include "platform/freedesktop/launch/FreedesktopActions.h"
#include "platform/freedesktop/launch/FreedesktopLauncher.h"
#include "platform/freedesktop/live/FreedesktopLiveQuery.h"
#include "platform/freedesktop/login/FreedesktopLoginItems.h"
#include "platform/freedesktop/pages/PdfRenderer.h"
#include "platform/freedesktop/pinned/FreedesktopPins.h"
#include "platform/freedesktop/web/LoadedWebClient.h"
#include "platform/freedesktop/windows/RunningWindows.h"
#include "platform/freedesktop/windows/WindowControl.h"
#include "platform/freedesktop/windows/XOwnWindows.h"
#include "platform/freedesktop/x11/DisplayCompositing.h"

#include <QGuiApplication>
#include <QtGui/qguiapplication_platform.h>

#include <atomic>
#include <utility>

namespace {

class FreedesktopDesktop final : public Desktop
{
public:
    explicit FreedesktopDesktop(std::shared_ptr<EntryReading> reading)
        : _reading(
            reading ? std::move(reading) : std::make_shared<EntryReading>(Languages::preferred()))
    { }

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
    const PinnedApplications &pinnedApplications() const override { return _pins; }
    const PageRenderer &pageRenderer() const override { return _pages; }
    const WebClient &webClient() const override { return _webClient; }
    const Account &account() const override { return _account; }
    const Compositing &compositing() const override
    {
        if (!_compositing) {
            _compositing = std::make_unique<DisplayCompositing>(toolkitDisplay());
        }
        return *_compositing;
    }
    OwnWindows &ownWindows() override
    {
        const auto *const toolkit = x11Toolkit();
        if (toolkit == nullptr) {
            return Desktop::ownWindows();
        }
        if (!_ownWindows) {
            _ownWindows = std::make_unique<XOwnWindows>(windows(), toolkit->connection());
        }
        return *_ownWindows;
    }
    const Motion &motion() const override { return _motion; }
    TaskBarProgress &taskBarProgress() override { return _progress; }
    LiveQuery &liveQuery() override { return _liveQuery; }
    LoginItems &loginItems() override { return _loginItems; }
    Memory &memory() override { return _memory; }
    HotKey &hotKey() override
    {
        if (!_hotKey) {
            _hotKey = makeHotKey();
        }
        return *_hotKey;
    }
    ModifierTap &modifierTap() override
    {
        if (!_modifierTap) {
            _modifierTap = std::make_unique<XModifierTap>(keyboard());
        }
        return *_modifierTap;
    }
    HotSpot &hotSpot() override
    {
        if (!_hotSpot) {
            _hotSpot = std::make_unique<XHotSpot>();
        }
        return *_hotSpot;
    }
    DragWatch &dragWatch() override
    {
        if (!_dragWatch && toolkitDisplay() != nullptr) {
            _dragWatch = std::make_unique<XDragWatch>(display());
        }
        return _dragWatch ? *_dragWatch : Desktop::dragWatch();
    }
    StatusItem &statusItem() override
    {
        if (!_statusItem) {
            _statusItem = std::make_unique<TrayStatusItem>();
        }
        return *_statusItem;
    }

private:
    // Null where Qt draws on anything but an X server.
    static const QNativeInterface::QX11Application *x11Toolkit()
    {
        // Qt's display without screens answers for X as well, without a connection.
        const auto *const shown = qobject_cast<QGuiApplication *>(QCoreApplication::instance());
        const bool isX11 =
            shown != nullptr && QGuiApplication::platformName() == QLatin1String("xcb");
        return isX11 ? shown->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    }
    XConnection *toolkitDisplay() const { return x11Toolkit() != nullptr ? &display() : nullptr; }

    // Made when they are first asked for: many a run has no use for the display.
    XConnection &display() const
    {
        if (!_display) {
            _display = std::make_unique<XConnection>();
        }
        return *_display;
    }
    XKeyboard &keyboard()
    {
        if (!_keyboard) {
            _keyboard = std::make_unique<XKeyboard>(display());
        }
        return *_keyboard;
    }
    // A grab on the X server of a Wayland session holds only while one of its windows has the
    // keyboard.
    std::unique_ptr<HotKey> makeHotKey()
    {
        if (qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")) {
            return std::make_unique<XHotKey>();
        }
        return std::make_unique<PortalHotKey>(SessionFolders::currentDesktops(),
            [this](quint32 scanCode) { return keyboard().namesOf(scanCode); });
    }
    RunningWindows &windows()
    {
        if (!_windows) {
            _windows = std::make_unique<RunningWindows>(
                display(), _entries, _paths.dataFolders(), SessionFolders::currentDesktops());
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
    const std::shared_ptr<EntryReading> _reading;
    DesktopEntryIndex &_entries = _reading->entries();
    FreedesktopItems _items { _entries, _paths.dataFolders(), SessionFolders::currentDesktops() };
    FreedesktopIcons _icons { [this](const QString &path) { return _items.iconNameOf(path); } };
    FreedesktopLiveQuery _liveQuery { _items };
    FreedesktopLoginItems _loginItems { SessionFolders::currentDesktops() };
    ProcessMemory _memory;
    FreedesktopDocuments _documents { _entries, _paths.dataFolders() };
    FreedesktopActions _actions;
    PdfRenderer _pages;
    LoadedWebClient _webClient;
    BusAccount _account;
    FreedesktopPins _pins { _paths.dataFolders(), SessionFolders::currentDesktops(),
        _paths.libraryFolder(SearchPaths::Domain::User) + QStringLiteral("/Preferences") };
    LauncherProgress _progress;
    mutable std::unique_ptr<XConnection> _display;
    mutable std::unique_ptr<DisplayCompositing> _compositing;
    DesktopMotion _motion { IconPlaces::fromEnvironment(), [this] { return toolkitDisplay(); } };
    std::unique_ptr<RunningWindows> _windows;
    std::unique_ptr<WindowControl> _control;
    std::unique_ptr<XOwnWindows> _ownWindows;
    std::unique_ptr<XKeyboard> _keyboard;
    std::unique_ptr<HotKey> _hotKey;
    std::unique_ptr<XModifierTap> _modifierTap;
    std::unique_ptr<XHotSpot> _hotSpot;
    std::unique_ptr<XDragWatch> _dragWatch;
    std::unique_ptr<TrayStatusItem> _statusItem;
    // For launches, which have threads of their own.
    std::atomic<RunningWindows *> _raisable = nullptr;
    FreedesktopLauncher _launcher { [this](const QString &path) { return raise(path); } };
};

} // namespace

std::shared_ptr<EntryReading> readFreedesktopEntries()
{
    auto reading = std::make_shared<EntryReading>(Languages::preferred());
    reading->start(FreedesktopPaths().dataFolders());
    return reading;
}

std::unique_ptr<Desktop> makeFreedesktopDesktop(std::shared_ptr<EntryReading> reading)
{
    quietImageLibraries();
    return std::make_unique<FreedesktopDesktop>(std::move(reading));
}

std::unique_ptr<SingleInstance> makeFreedesktopInstance()
{
    return std::make_unique<BusInstance>();
}
