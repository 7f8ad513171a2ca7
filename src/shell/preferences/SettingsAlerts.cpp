#include "shell/preferences/SettingsAlerts.h"

#include "catalogue/files/SettingsExchange.h"
#include "support/Alerts.h"
#include "support/Translations.h"
#include "support/UserDefaults.h"
#include "support/files/StandardPath.h"

#include <QFileInfo>

namespace {

// The file of another user may hold any number of them.
constexpr qsizetype mostNamed = 8;

// With a capital and a full stop, as the reason stands alone.
QString sentence(const QString &reason)
{
    const QString text = Translations::ofReason(reason);
    return text.left(1).toUpper() + text.mid(1) + QLatin1Char('.');
}

} // namespace

QString SettingsAlerts::namesOf(const QList<SettingsDocument::LeftOut> &leftOut)
{
    QStringList lines(tr("Left out:"));
    for (const SettingsDocument::LeftOut &part : leftOut.mid(0, mostNamed)) {
        lines.append(QStringLiteral("%1 (%2)").arg(part.name, Translations::ofReason(part.reason)));
    }
    if (leftOut.size() > mostNamed) {
        lines.append(QStringLiteral("…"));
    }
    return lines.join(QLatin1Char('\n'));
}

QString SettingsAlerts::wayBack(const QStringList &before)
{
    QStringList folders;
    for (const QString &file : before) {
        folders.append(abbreviatedPath(QFileInfo(file).absolutePath()));
    }
    folders.removeDuplicates();
    return tr("What was before stays in %1, in files whose names end with “.before”. To go back, "
              "take that off their names.")
        .arg(folders.join(QStringLiteral(", ")));
}

void SettingsAlerts::exportTo(const QString &file, const SearchPaths &searchPaths, QWidget &window)
{
    const SettingsExchange exchange(searchPaths, UserDefaults::standard());
    const QString problem = exchange.exportTo(file);
    if (!problem.isEmpty()) {
        Alerts::run(
            Alert::warning(tr("The settings cannot be exported."), sentence(problem)), &window);
    }
}

void SettingsAlerts::importFrom(
    const QString &file, const SearchPaths &searchPaths, QWidget &window)
{
    const SettingsExchange exchange(searchPaths, UserDefaults::standard());
    const SettingsExchange::Import import = exchange.importFrom(file);
    if (!import.error.isEmpty()) {
        Alerts::run(Alert::warning(tr("The settings cannot be imported."), sentence(import.error)),
            &window);
        return;
    }
    QStringList paragraphs;
    if (!import.leftOut.isEmpty()) {
        paragraphs.append(namesOf(import.leftOut));
    }
    if (!import.before.isEmpty()) {
        paragraphs.append(wayBack(import.before));
    }
    const QString message = import.changed.isEmpty() ? tr("Everything is as in the file already.")
                                                     : tr("The settings were imported.");
    Alerts::run(Alert::information(message, paragraphs.join(QStringLiteral("\n\n"))), &window);
}
