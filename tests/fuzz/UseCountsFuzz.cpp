#include "finding/UseCounts.h"
#include "fuzz/Fuzz.h"

#include <cmath>

void fuzz(const QByteArray &bytes)
{
    constexpr double now = 1.7e9;
    const QString name = QStringLiteral("Use.plist");
    UseCounts uses(folderWith(name, bytes) + QLatin1Char('/') + name);
    uses.setOn(true);
    require(std::isfinite(uses.of(QStringLiteral("/a"))));
    // A use counts whatever was stored.
    uses.note(QStringLiteral("/a"), now);
    const double once = uses.of(QStringLiteral("/a"));
    require(once >= now && once < now + 21 * UseCounts::HalfLife);
    // Removes what was set aside as well.
    uses.forget();
}
