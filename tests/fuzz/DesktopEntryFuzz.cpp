#include "fuzz/Fuzz.h"
#include "platform/freedesktop/entries/DesktopEntry.h"
#include "platform/freedesktop/entries/EntryWords.h"

#include <algorithm>

void fuzz(const QByteArray &bytes)
{
    const DesktopEntry entry = DesktopEntry::fromData(bytes, { "de_AT", "de" });
    const auto isControl = [](QChar c) { return c.category() == QChar::Other_Control; };
    require(entry.kind != DesktopEntry::Kind::Broken || !entry.problem.isEmpty());
    require(
        entry.name.size() <= 300 && std::none_of(entry.name.begin(), entry.name.end(), isControl));
    const ItemWords words = EntryWords::in(bytes, { "de_AT", "de" });
    require(words.commands.size() <= 2 && !words.keywords.contains(QString()));
    entry.isShownIn({ QStringLiteral("GNOME"), QStringLiteral("KDE") });
}
