#include "platform/freedesktop/FreedesktopDesktop.h"

#include "platform/freedesktop/DesktopEntryIndex.h"
#include "platform/freedesktop/FreedesktopDocuments.h"
#include "platform/freedesktop/FreedesktopIcons.h"
#include "platform/freedesktop/FreedesktopItems.h"
#include "platform/freedesktop/FreedesktopLauncher.h"
#include "platform/freedesktop/FreedesktopPaths.h"
#include "platform/freedesktop/Languages.h"

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

private:
    FreedesktopPaths _paths;
    DesktopEntryIndex _entries { Languages::preferred() };
    FreedesktopItems _items { _entries, _paths.dataFolders(), currentDesktops() };
    FreedesktopIcons _icons { [this](const QString &path) { return _items.iconNameOf(path); } };
    FreedesktopLauncher _launcher;
    FreedesktopDocuments _documents;
};

} // namespace

std::unique_ptr<Desktop> makeFreedesktopDesktop()
{
    quietImageLibraries();
    return std::make_unique<FreedesktopDesktop>();
}
