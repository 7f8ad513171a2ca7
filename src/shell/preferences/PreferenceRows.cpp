#include "shell/preferences/PreferenceRows.h"

#include "shell/preferences/ColorWell.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QSpinBox>

namespace {

QFormLayout &formOn(QWidget &page)
{
    auto *const form = new QFormLayout(&page);
    form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    return *form;
}

QString withoutMnemonic(const QString &label)
{
    return QString(label).remove(u'&').remove(u':');
}

} // namespace

PreferenceRows::PreferenceRows(PreferenceControls &controls, QWidget &page)
    : _controls(controls)
    , _form(formOn(page))
{ }

void PreferenceRows::add(const QString &label, QWidget *control)
{
    _form.addRow(label, control);
    if (control->accessibleName().isEmpty()) {
        control->setAccessibleName(withoutMnemonic(label));
    }
}

void PreferenceRows::addCheckBox(const char *key, const QString &text)
{
    _form.addRow(_controls.checkBox(QLatin1String(key), text));
}

void PreferenceRows::addComboBox(
    const char *key, const QString &label, const PreferenceControls::Choices &choices)
{
    add(label, _controls.comboBox(QLatin1String(key), choices));
}

void PreferenceRows::addSlider(
    const char *key, const QString &label, const PreferenceControls::Range &range)
{
    add(label, _controls.slider(QLatin1String(key), range, withoutMnemonic(label)));
}

void PreferenceRows::addColorWell(const char *key, const QString &label, const QString &title)
{
    add(label, _controls.colorWell(QLatin1String(key), title));
}

void PreferenceRows::addHiddenCheckBox(const char *key, const QString &text)
{
    addHidden(_controls.checkBox(QLatin1String(key), text));
}

// A form gives the place of a hidden row away; the others are not to move when it comes.
void PreferenceRows::addHidden(QWidget *control)
{
    auto *const place = new QWidget;
    auto *const layout = new QHBoxLayout(place);
    layout->setContentsMargins({});
    layout->addWidget(control);
    _controls.hide(control);
    _form.addRow(place);
}

void PreferenceRows::addHiddenStepper(const char *key, const QString &label,
    const PreferenceControls::Range &range, const QString &unit)
{
    auto *const row = new QWidget;
    auto *const layout = new QHBoxLayout(row);
    auto *const before = new QLabel(label);
    QSpinBox *const stepper = _controls.stepper(QLatin1String(key), range);
    stepper->setAccessibleName(withoutMnemonic(label));
    before->setBuddy(stepper);
    layout->setContentsMargins({});
    layout->addWidget(before);
    layout->addWidget(stepper);
    layout->addWidget(new QLabel(unit));
    layout->addStretch();
    addHidden(row);
}

void PreferenceRows::addGap()
{
    auto *const gap = new QWidget;
    gap->setFixedHeight(gap->fontMetrics().height() / 2);
    _form.addRow(gap);
}
