// Tells that there is a newer version, what is new in it, and where it is. Accepted when the user
// goes on to that page, rejected otherwise.

#pragma once

#include "updates/UpdateFeed.h"

#include <QDialog>

class QCheckBox;

class UpdateWindow final : public QDialog
{
    Q_OBJECT

public:
    UpdateWindow(const QString &programName, const QVersionNumber &present, const Release &release);

    // The box with which the user has newer versions looked for.
    QCheckBox &automaticChecks() { return *_automaticChecks; }

Q_SIGNALS:
    // The user wants to see the page of the release.
    void pageWanted(const QUrl &page);
    // The user does not want to hear of this version again.
    void skipWanted();

private:
    void addButtons(const Release &release);

    QCheckBox *_automaticChecks;
};
