#include "shell/preferences/ColorSortingOptions.h"

#include "shell/preferences/PreferenceRows.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QPushButton>

ColorSortingOptions::ColorSortingOptions(QWidget *parent)
    : Sheet(tr("Order by Colour"), parent)
{
    using Unit = PreferenceControls::Range::Unit;
    PreferenceRows rows(_controls, *this);
    rows.addSlider("colorSortWrapHue", tr("Hue that comes &first:"), { 0, 359, Unit::Degrees });
    rows.addSlider("colorSortMinSaturation", tr("A colour counts from a &saturation of:"),
        { 0, 100, Unit::Hundredths });
    rows.addSlider("colorSortGrayThreshold", tr("An icon counts as coloured from a s&hare of:"),
        { 0, 100, Unit::Hundredths });
    rows.addCheckBox(
        "colorSortGraysBySecondaryColor", tr("Order &grey icons by the little colour they have"));
    rows.addGap();
    auto *const buttons =
        new QDialogButtonBox(QDialogButtonBox::Close | QDialogButtonBox::RestoreDefaults);
    buttons->button(QDialogButtonBox::RestoreDefaults)->setText(tr("&Defaults"));
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(buttons->button(QDialogButtonBox::RestoreDefaults), &QPushButton::clicked, this,
        &ColorSortingOptions::resetWanted);
    rows.form().addRow(buttons);
}
