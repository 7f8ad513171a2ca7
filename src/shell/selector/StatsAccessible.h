// What a screen reader hears of the group selector: a row of tabs, one for each group, with the
// number of applications in full words however short the label is. A tab can be pressed.
//
// Tabs are made when they are asked for and go with the row, which goes with the control. Nothing
// is made, and nothing announced, while no assistive technology is there.

#pragma once

#include "shell/selector/OTStatsControl.h"

#include <QAccessibleWidget>

#include <array>

class StatsAccessible final : public QAccessibleWidget
{
public:
    // Makes every selector known to assistive technologies; once is enough, more does no harm.
    static void install();

    // To be called after another button was selected, and after the name of one has changed.
    static void selectionChanged(OTStatsControl *control);
    static void nameChanged(OTStatsControl *control, int index);

    explicit StatsAccessible(OTStatsControl *control);
    ~StatsAccessible() override;

    // Null once the control is gone.
    OTStatsControl *control() const;

    int childCount() const override { return StatsButtons::Count; }
    QAccessibleInterface *child(int index) const override;
    int indexOfChild(const QAccessibleInterface *child) const override;
    QAccessibleInterface *childAt(int x, int y) const override;
    QAccessibleInterface *focusChild() const override { return nullptr; }

private:
    mutable std::array<QAccessible::Id, StatsButtons::Count> _tabs {};
};
