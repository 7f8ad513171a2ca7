// Two buttons that let the user choose a file for an export of all settings, or for their import.

#pragma once

#include <QFileDialog>
#include <QPointer>
#include <QWidget>

class SettingsButtons final : public QWidget
{
    Q_OBJECT

public:
    explicit SettingsButtons(QWidget *parent = nullptr);

    // What was chosen there is not taken.
    void closeFileDialog();

Q_SIGNALS:
    void exportWanted(const QString &file);
    void importWanted(const QString &file);

private:
    using Wanted = void (SettingsButtons::*)(const QString &file);
    void addButton(const QString &text, QFileDialog::AcceptMode mode, Wanted wanted);
    void openFileDialog(const QString &title, QFileDialog::AcceptMode mode, Wanted wanted);

    QPointer<QFileDialog> _dialog;
};
