// What the user has set up, to a file and from one. The files are changed under their locks,
// whether a program runs or not; one that runs follows them.

#include "catalogue/files/SettingsExchange.h"
#include "commands/Commands.h"
#include "commands/Output.h"
#include "platform/Desktop.h"
#include "support/UserDefaults.h"
#include "support/files/PropertyList.h"

#include <QFile>

#include <cstdio>

namespace {

bool isStandardStream(const QString &file)
{
    return file == QLatin1String("-");
}

QByteArray readStandardInput()
{
    QFile input;
    QByteArray data;
    if (!input.open(stdin, QIODevice::ReadOnly)) {
        return data;
    }
    // One byte too many is refused.
    while (data.size() <= PropertyList::maximumSize) {
        const QByteArray part = input.read(PropertyList::maximumSize + 1 - data.size());
        if (part.isEmpty()) {
            break;
        }
        data += part;
    }
    return data;
}

QStringList report(const SettingsExchange::Import &import)
{
    if (import.changed.isEmpty()) {
        return { QStringLiteral("nothing to change") };
    }
    QStringList lines;
    for (const QString &file : import.changed) {
        lines.append(QStringLiteral("changed %1").arg(file));
    }
    for (const QString &file : import.before) {
        lines.append(QStringLiteral("before  %1").arg(file));
    }
    if (!import.before.isEmpty()) {
        lines.append(
            QStringLiteral("To go back, rename each of these to its name without .before."));
    }
    return lines;
}

} // namespace

int Commands::exportSettings(const Invocation &invocation, const Desktop &desktop)
{
    const SettingsExchange exchange(desktop.searchPaths(), UserDefaults::standard());
    QString error;
    if (isStandardStream(invocation.file)) {
        const QByteArray data = exchange.exported(&error);
        return error.isEmpty() ? (Output::print(QString::fromUtf8(data)) ? 0 : 1)
                               : Output::fail(QStringLiteral("cannot export: %1").arg(error));
    }
    error = exchange.exportTo(invocation.file);
    return error.isEmpty()
        ? 0
        : Output::fail(QStringLiteral("cannot export to %1: %2").arg(invocation.file, error));
}

int Commands::importSettings(const Invocation &invocation, const Desktop &desktop)
{
    const SettingsExchange exchange(desktop.searchPaths(), UserDefaults::standard());
    const SettingsExchange::Import import = isStandardStream(invocation.file)
        ? exchange.importData(readStandardInput())
        : exchange.importFrom(invocation.file);
    for (const SettingsDocument::LeftOut &part : import.leftOut) {
        Output::remark(QStringLiteral("left out %1: %2").arg(part.name, part.reason));
    }
    if (!import.error.isEmpty()) {
        return Output::fail(
            QStringLiteral("cannot import %1: %2").arg(invocation.file, import.error));
    }
    return Output::printLines(report(import)) ? 0 : 1;
}
