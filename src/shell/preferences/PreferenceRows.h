// A form that is filled with the controls of preferences, row by row.

#pragma once

#include "shell/preferences/PreferenceControls.h"

#include <QString>

class QFormLayout;
class QWidget;

class PreferenceRows final
{
public:
    // The controls outlive the page, which owns what these make. In all texts the mnemonic counts.
    PreferenceRows(PreferenceControls &controls, QWidget &page);

    QFormLayout &form() { return _form; }

    void add(const QString &label, QWidget *control);
    void addCheckBox(const char *key, const QString &text);
    void addComboBox(
        const char *key, const QString &label, const PreferenceControls::Choices &choices);
    void addSlider(const char *key, const QString &label, const PreferenceControls::Range &range);
    void addColorWell(const char *key, const QString &label, const QString &title);
    // These are shown only when hidden preferences are asked for. Their place stays free meanwhile.
    void addHiddenCheckBox(const char *key, const QString &text);
    void addHiddenStepper(const char *key, const QString &label,
        const PreferenceControls::Range &range, const QString &unit);
    // Between rows that belong together.
    void addGap();

private:
    void addHidden(QWidget *control);

    PreferenceControls &_controls;
    QFormLayout &_form;
};
