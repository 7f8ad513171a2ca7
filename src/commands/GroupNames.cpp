#include "commands/GroupNames.h"

#include <QStringList>

namespace {

const QStringList &names()
{
    static const QStringList list { QStringLiteral("runningApps"), QStringLiteral("includedApps"),
        QStringLiteral("includedApps1D"), QStringLiteral("excludedApps"),
        QStringLiteral("excludedApps1D"), QStringLiteral("allApps"), QStringLiteral("allApps1D"),
        QStringLiteral("missingApps"), QStringLiteral("userApps"), QStringLiteral("userApps1D") };
    return list;
}

} // namespace

std::optional<int> groupFromText(const QString &text)
{
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    const qsizetype group = isNumber ? number : names().indexOf(text);
    return group >= 0 && group < names().size() ? std::optional(int(group)) : std::nullopt;
}

QString groupName(int group)
{
    return names().value(group);
}
