#include "platform/freedesktop/FreedesktopWording.h"

#include <array>
#include <utility>

namespace {

constexpr std::array<std::pair<const char *, const char *>, 1> words { {
    { "Finder", "File Manager" },
} };

} // namespace

QString FreedesktopWording::translate(const char *, const char *sourceText, const char *, int) const
{
    QString text = QString::fromUtf8(sourceText);
    bool isOther = false;
    for (const auto &[word, ours] : words) {
        if (text.contains(QLatin1String(word))) {
            text.replace(QLatin1String(word), QLatin1String(ours));
            isOther = true;
        }
    }
    return isOther ? text : QString();
}
