// Exports and imports all settings for the preferences, and says how that went in an alert on their
// window. An export that succeeds is silent.

#pragma once

#include "catalogue/files/SettingsDocument.h"

#include <QCoreApplication>
#include <QString>

class QWidget;
class SearchPaths;

class SettingsAlerts final
{
    Q_DECLARE_TR_FUNCTIONS(SettingsAlerts)

public:
    static void exportTo(const QString &file, const SearchPaths &searchPaths, QWidget &window);
    // What changes is announced as a change by another program is.
    static void importFrom(const QString &file, const SearchPaths &searchPaths, QWidget &window);

private:
    static QString namesOf(const QList<SettingsDocument::LeftOut> &leftOut);
    static QString wayBack(const QStringList &before);
};
