#include "shell/selector/HueBarAccessible.h"

#include "shell/selector/HueBar.h"

namespace {

QAccessibleInterface *hueBarInterface(const QString &, QObject *object)
{
    auto *const bar = qobject_cast<HueBar *>(object);
    return bar ? new HueBarAccessible(bar) : nullptr;
}

} // namespace

void HueBarAccessible::install()
{
    QAccessible::installFactory(hueBarInterface);
}

void HueBarAccessible::valueChanged(HueBar *bar)
{
    if (QAccessible::isActive()) {
        QAccessibleValueChangeEvent value(bar, int(bar->index() + 1));
        QAccessible::updateAccessibility(&value);
        QAccessibleEvent name(bar, QAccessible::DescriptionChanged);
        QAccessible::updateAccessibility(&name);
    }
}

void HueBarAccessible::focusTaken(HueBar *bar)
{
    if (QAccessible::isActive()) {
        QAccessibleEvent focus(bar, QAccessible::Focus);
        QAccessible::updateAccessibility(&focus);
    }
}

HueBarAccessible::HueBarAccessible(HueBar *bar)
    : QAccessibleWidget(bar, QAccessible::Slider)
{ }

HueBar *HueBarAccessible::bar() const
{
    return qobject_cast<HueBar *>(object());
}

void *HueBarAccessible::interface_cast(QAccessible::InterfaceType type)
{
    return type == QAccessible::ValueInterface ? static_cast<QAccessibleValueInterface *>(this)
                                               : QAccessibleWidget::interface_cast(type);
}

QString HueBarAccessible::text(QAccessible::Text kind) const
{
    const bool isOfColor = kind == QAccessible::Value || kind == QAccessible::Description;
    return isOfColor && bar() ? bar()->colorName() : QAccessibleWidget::text(kind);
}

QAccessible::State HueBarAccessible::state() const
{
    QAccessible::State state = QAccessibleWidget::state();
    if (HueBar *const ours = bar()) {
        state.focusable = true;
        // The bar never has the keyboard itself, its window hands the keys on.
        state.focused = ours->hasKeys() && ours->isActiveWindow();
        state.invisible = !ours->isVisible() || !ours->strip().isOfUse();
    }
    return state;
}

QVariant HueBarAccessible::currentValue() const
{
    return bar() ? int(bar()->index() + 1) : 0;
}

void HueBarAccessible::setCurrentValue(const QVariant &value)
{
    if (bar() && value.toInt() > 0) {
        bar()->moveTo(value.toInt() - 1);
    } else if (bar()) {
        bar()->leave();
    }
}

QVariant HueBarAccessible::maximumValue() const
{
    return bar() ? int(bar()->strip().count()) : 0;
}
