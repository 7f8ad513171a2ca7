// The editor of the folders to scan: the list, and below it a button that adds and one that
// removes.
//
// Every change is in the preference "searchDirectories" at once.

#pragma once

#include "shell/preferences/OTArrayController.h"

#include <QPointer>
#include <QWidget>

class DirectoriesTable;
class QFileDialog;
class QToolButton;

class ScanFolderTable : public QWidget
{
    Q_OBJECT

public:
    // Preferences and items must outlive it. Items tell which dropped files are applications.
    ScanFolderTable(UserDefaults &defaults, const Items &items, QWidget *parent = nullptr);

    OTArrayController &controller() { return _controller; }

    // Asks for folders in a dialog on this widget's window, and inserts them below the selected
    // row, above all without one.
    void directoryPlusClicked();
    // Nothing is inserted.
    void closeOpenPanel();

private:
    void openPanelDidEnd(int returnCode);
    void updateButtons();
    QToolButton *makeButton(const QString &sign, const QString &name, const QString &key);

    OTArrayController _controller;
    DirectoriesTable *const _directoriesTable;
    QToolButton *const _directoryPlusButton;
    QToolButton *const _directoryMinusButton;
    QPointer<QFileDialog> _openPanel;
};
