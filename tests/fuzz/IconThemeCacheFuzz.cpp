#include "fuzz/Fuzz.h"
#include "platform/freedesktop/icons/IconThemeCache.h"

void fuzz(const QByteArray &bytes)
{
    const QString folder = folderWith(QStringLiteral("icon-theme.cache"), bytes);
    if (const auto cache = IconThemeCache::open(folder.toLocal8Bit())) {
        require(!cache->directories().empty() && cache->directories().size() < 10'000);
        for (const char *name : { "a", "bcd", "other", "" }) {
            require(cache->find(name).size() <= 1000);
        }
    }
}
