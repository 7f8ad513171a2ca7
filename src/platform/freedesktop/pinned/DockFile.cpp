#include "platform/freedesktop/pinned/PinFiles.h"
#include "platform/freedesktop/pinned/PinLists.h"
#include "support/files/PropertyList.h"

QStringList PinLists::dockFile(const QString &preferencesFolder)
{
    const QString path = preferencesFolder + QStringLiteral("/com.apple.dock.plist");
    const PropertyList::Document file = PropertyList::readFile(path, PinFiles::maximumSize);
    if (file.state == PropertyList::State::Damaged) {
        PinFiles::sayUnusable(path, file.error);
    }
    QStringList pins;
    const QVariantList tiles = file.value.toMap().value(QStringLiteral("persistent-apps")).toList();
    for (const QVariant &tile : tiles) {
        const QVariantMap data = tile.toMap().value(QStringLiteral("tile-data")).toMap();
        const QVariantMap fileData = data.value(QStringLiteral("file-data")).toMap();
        const QVariant location = fileData.value(QStringLiteral("_CFURLString"));
        // A path in spite of its name, and not below the folder that the program happens to be in.
        if (location.typeId() == QMetaType::QString && location.toString().startsWith(u'/')) {
            pins.append(location.toString());
        }
    }
    return pins;
}
