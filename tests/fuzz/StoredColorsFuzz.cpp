#include "catalogue/files/StoredColors.h"
#include "fuzz/Fuzz.h"

void fuzz(const QByteArray &bytes)
{
    const QString name = QStringLiteral("ColorCorrections.plist");
    StoredColors stored(
        folderWith(name, bytes) + QLatin1Char('/') + name, StoredColors::Writing::Never);
    stored.read();
    const StoredColors::Colors &colors = stored.colors();
    for (auto color = colors.cbegin(); color != colors.cend(); ++color) {
        require(color.key().startsWith(QLatin1Char('/')));
        for (const double share : { color->red, color->green, color->blue }) {
            require(share >= 0 && share <= 1);
        }
    }
}
