// What to exclude at once, instead of icon by icon: a sheet on the panel.

#pragma once

#include "shell/preferences/Sheet.h"

class QCheckBox;
class QPlainTextEdit;
class QPushButton;

class ExclusionWindow final : public Sheet
{
    Q_OBJECT

public:
    explicit ExclusionWindow(QWidget *parent);

    // Shows the words by which the second choice goes.
    void setNameSubstrings(const QStringList &words);

Q_SIGNALS:
    // What the user has ticked. The sheet closes.
    void exclusionWanted(bool dockApps, bool namedApps);

private:
    void exclude();

    QCheckBox *_excludeDockAppsCheckbox;
    QCheckBox *_excludeAppsWithSubstringsCheckbox;
    QPlainTextEdit *_nameSubstringsTextView;
    QPushButton *_excludeAppsButton;
};
