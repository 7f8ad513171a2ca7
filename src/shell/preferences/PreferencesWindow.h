// The preferences: tabs of controls, each with a button that brings its defaults back. Every change
// counts as soon as it is made, so there is nothing to confirm.

#pragma once

#include "shell/preferences/HotKeyControl.h"

#include <QDialog>

#include <functional>
#include <memory>
#include <vector>

class Items;
class PreferenceControls;
class QTabWidget;

class PreferencesWindow final : public QDialog
{
    Q_OBJECT

public:
    // Modal on its parent. The items tell folders from files, and must outlive the window.
    PreferencesWindow(const HotKeyChoice &hotKey, const Items &items, QWidget *parent);
    ~PreferencesWindow() override;

    // Under a point of the screen, as far as the screen allows.
    void showUnder(const QPoint &middleOfUpperEdge);

protected:
    void hideEvent(QHideEvent *event) override;

private:
    using Page = std::function<QWidget *(PreferenceControls &)>;
    void addTab(const QString &title, const Page &page);

    QTabWidget *_tabs;
    std::vector<std::unique_ptr<PreferenceControls>> _controls;
};
