// The preferences: tabs of controls, each with a button that brings its defaults back. Every change
// counts as soon as it is made, so there is nothing to confirm.

#pragma once

#include "shell/preferences/HotKeyControl.h"
#include "shell/preferences/PreferenceTabs.h"
#include "shell/preferences/Sheet.h"

#include <functional>
#include <memory>
#include <vector>

class Items;
class PreferenceControls;
class QLabel;
class QPushButton;
class QTabWidget;

class PreferencesWindow final : public Sheet
{
    Q_OBJECT

public:
    // Modal on its parent. The items tell folders from files, and must outlive the window.
    PreferencesWindow(const HotKeyChoice &hotKey, const Items &items,
        PreferenceTabs::UpdateChecks updates, QWidget *parent);
    ~PreferencesWindow() override;

    // The hot key was lost, or could be taken after all.
    void hotKeyProblemDidChange();
    // The button that ends the program is for those whom no menu offers that.
    void setQuitButtonHidden(bool isHidden);
    // Those that few need are shown only when asked for.
    void setHiddenPreferencesShown(bool areShown);
    // Says below the tabs why a change was not made, until the window closes; nothing when empty.
    void setProblem(const QString &problem);

Q_SIGNALS:
    void colorSortingOptionsWanted();
    void quitWanted();
    // All settings are to go to a file, or come from one.
    void exportWanted(const QString &file);
    void importWanted(const QString &file);

protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    using Page = std::function<QWidget *(PreferenceControls &)>;
    void addTabs(
        const HotKeyChoice &hotKey, const Items &items, PreferenceTabs::UpdateChecks updates);
    void addTab(const QString &title, const Page &page);
    void showProblems();

    QTabWidget *_tabs;
    QLabel *_problems;
    QString _problem;
    QPushButton *_prefsQuitButton;
    std::vector<std::unique_ptr<PreferenceControls>> _controls;
};
