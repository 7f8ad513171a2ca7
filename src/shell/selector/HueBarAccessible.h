// What a screen reader hears of the bar of hues: a slider whose value is the name of a colour.
//
// Nothing is announced while no assistive technology is there.

#pragma once

#include <QAccessibleWidget>

class HueBar;

class HueBarAccessible final : public QAccessibleWidget, public QAccessibleValueInterface
{
public:
    // Makes every bar known to assistive technologies; once is enough, more does no harm.
    static void install();

    // To be called after the window has moved, and after the bar got the arrow keys.
    static void valueChanged(HueBar *bar);
    static void focusTaken(HueBar *bar);

    explicit HueBarAccessible(HueBar *bar);

    void *interface_cast(QAccessible::InterfaceType type) override;
    // Not every reader asks for the value of a slider as a text: the description has it too.
    QString text(QAccessible::Text kind) const override;
    QAccessible::State state() const override;

    // The icon on which the window stands, counted from 1 in the order by colour; 0 without a
    // window.
    QVariant currentValue() const override;
    void setCurrentValue(const QVariant &value) override;
    QVariant maximumValue() const override;
    QVariant minimumValue() const override { return 0; }
    QVariant minimumStepSize() const override { return 1; }

private:
    // Null once the bar is gone.
    HueBar *bar() const;
};
