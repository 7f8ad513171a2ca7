#include "catalogue/OTAppManager.h"
#include "commands/CatalogueSetup.h"
#include "commands/Commands.h"
#include "commands/GroupNames.h"
#include "commands/Output.h"
#include "grid/OTIconView.h"
#include "shell/panel/OTWindow.h"

#include <QImage>

namespace {

// Without a screen to go by, a grid as large as a common one.
constexpr QSizeF UsualBounds(1248, 768);

} // namespace

int Commands::screenshot(const Invocation &invocation, Desktop &desktop)
{
    const int group = groupFromText(invocation.group.value_or(QString())).value_or(IncludedGroup);
    OTAppManager manager(desktop, OTAppManager::Use::Preview);
    CatalogueSetup::fill(manager, group, CatalogueSetup::Scan::OnlyWhenNothingIsSaved);
    OTWindow window(manager, desktop, invocation.bounds.value_or(UsualBounds));
    window.iconView().setGroupToShow(group);
    CatalogueSetup::waitForIcons(manager);

    QImage picture(
        (QSizeF(window.size()) * invocation.scale).toSize(), QImage::Format_ARGB32_Premultiplied);
    if (picture.isNull()) {
        return Output::fail(QStringLiteral("the picture would be too large"));
    }
    picture.setDevicePixelRatio(invocation.scale);
    // Drawn once so that sharper icons are asked for where they are needed, and then with them.
    window.render(&picture);
    CatalogueSetup::waitForIcons(manager);
    picture.fill(Qt::transparent);
    window.render(&picture);
    return Output::writePicture(picture, invocation.file);
}
