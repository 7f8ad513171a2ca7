#include "shell/preferences/PreferenceControls.h"

#include "shell/preferences/ColorWell.h"
#include "support/Shapes.h"
#include "support/UserDefaults.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QSignalBlocker>
#include <QSlider>
#include <QSpinBox>

#include <algorithm>
#include <cmath>

namespace {

// In digits.
constexpr int SliderWidth = 24;

// In the type that the preference has.
void store(const QString &key, QVariant value)
{
    UserDefaults &defaults = UserDefaults::standard();
    const QVariant registered = defaults.defaultForKey(key);
    if (registered.isValid()) {
        value.convert(registered.metaType());
    }
    defaults.setObject(key, value);
}

} // namespace

void PreferenceControls::add(
    QWidget *control, const QString &key, const std::function<void()> &show)
{
    UserDefaults &defaults = UserDefaults::standard();
    if (!std::exchange(_isFollowing, true)) {
        connect(&defaults, &UserDefaults::changed, this, &PreferenceControls::refresh);
    }
    _refreshes.insert(key, show);
    show();
    disableIfFixed(*control, { key });
}

void PreferenceControls::disableIfFixed(QWidget &control, const QStringList &keys)
{
    const UserDefaults &defaults = UserDefaults::standard();
    if (std::any_of(keys.begin(), keys.end(),
            [&defaults](const QString &key) { return defaults.isFixedForThisRun(key); })) {
        control.setEnabled(false);
        control.setToolTip(tr("Given for this run by --set."));
        control.setAccessibleDescription(control.toolTip());
    }
}

void PreferenceControls::refresh(const QString &key)
{
    const auto [first, last] = _refreshes.equal_range(key);
    std::for_each(first, last, [](const std::function<void()> &show) { show(); });
}

QCheckBox *PreferenceControls::checkBox(const QString &key, const QString &text)
{
    auto *const box = new QCheckBox(text);
    add(box, key, [box, key] {
        const QSignalBlocker blocker(box);
        box->setChecked(UserDefaults::standard().boolForKey(key));
    });
    connect(box, &QCheckBox::toggled, this, [key](bool isOn) { store(key, isOn); });
    return box;
}

QComboBox *PreferenceControls::comboBox(const QString &key, const Choices &choices)
{
    auto *const box = new QComboBox;
    for (const auto &[text, value] : choices) {
        box->addItem(text, value);
    }
    add(box, key, [box, key] {
        const QSignalBlocker blocker(box);
        box->setCurrentIndex(box->findData(UserDefaults::standard().objectForKey(key).toInt()));
    });
    connect(box, &QComboBox::activated, this,
        [box, key](int index) { store(key, box->itemData(index)); });
    return box;
}

QWidget *PreferenceControls::slider(const QString &key, const Range &range, const QString &name)
{
    const bool isWhole = range.unit == Range::Unit::Points || range.unit == Range::Unit::Degrees;
    const double unit = isWhole ? 1 : 100;
    auto *const row = new QWidget;
    auto *const slider = new QSlider(Qt::Horizontal);
    auto *const value = new QLabel;
    slider->setRange(range.least, range.most);
    slider->setMinimumWidth(slider->fontMetrics().horizontalAdvance(u'0') * SliderWidth);
    slider->setAccessibleName(name);
    row->setFocusProxy(slider);
    row->setFocusPolicy(slider->focusPolicy());
    auto *const layout = new QHBoxLayout(row);
    layout->setContentsMargins({});
    layout->addWidget(slider, 1);
    layout->addWidget(value);
    const auto text = [range](int position) {
        switch (range.unit) {
        case Range::Unit::Points:
            break;
        case Range::Unit::Degrees:
            return tr("%1°").arg(position);
        case Range::Unit::Hundredths:
            return tr("%1 %").arg(position);
        case Range::Unit::Seconds:
            return tr("%1 s").arg(position / 100.0, 0, 'f', 2);
        }
        return QString::number(position);
    };
    // Wide enough for every value of every slider, so that these are of one length.
    value->setMinimumWidth(value->fontMetrics().horizontalAdvance(QStringLiteral("00.00 s")));
    value->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    add(row, key, [slider, value, key, unit, text] {
        const QSignalBlocker blocker(slider);
        slider->setValue(int(std::lround(UserDefaults::standard().doubleForKey(key) * unit)));
        value->setText(text(slider->value()));
    });
    connect(slider, &QSlider::valueChanged, this,
        [key, unit](int position) { store(key, position / unit); });
    return row;
}

QSpinBox *PreferenceControls::stepper(const QString &key, const Range &range)
{
    auto *const stepper = new QSpinBox;
    stepper->setKeyboardTracking(false);
    stepper->setRange(range.least, range.most);
    add(stepper, key, [stepper, key] {
        const QSignalBlocker blocker(stepper);
        const qint64 value = UserDefaults::standard().integerForKey(key);
        stepper->setValue(
            int(std::clamp(value, qint64(stepper->minimum()), qint64(stepper->maximum()))));
    });
    connect(stepper, &QSpinBox::valueChanged, this, [key](int value) { store(key, value); });
    return stepper;
}

ColorWell *PreferenceControls::colorWell(const QString &key, const QString &title)
{
    auto *const well = new ColorWell(title);
    addChooser([well] { well->closeChooser(); });
    add(well, key, [well, key] { well->setColor(UserDefaults::standard().colorForKey(key)); });
    connect(well, &ColorWell::colorChosen, this,
        [key](const QColor &color) { store(key, colorText(color)); });
    return well;
}

void PreferenceControls::reset()
{
    UserDefaults &defaults = UserDefaults::standard();
    for (const QString &key : keys()) {
        // What cannot be set now, and whose stored value is not shown, is left alone.
        if (!defaults.isFixedForThisRun(key)) {
            defaults.removeObject(key);
        }
    }
    for (const std::function<void()> &action : std::as_const(_resets)) {
        action();
    }
}

void PreferenceControls::hide(QWidget *control)
{
    QSizePolicy policy = control->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    control->setSizePolicy(policy);
    control->hide();
    _hidden.append(control);
}

void PreferenceControls::setHiddenShown(bool areShown)
{
    for (QWidget *const control : std::as_const(_hidden)) {
        control->setVisible(areShown);
    }
}

void PreferenceControls::closeChoosers()
{
    for (const std::function<void()> &close : std::as_const(_choosers)) {
        close();
    }
}
