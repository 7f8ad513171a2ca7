// What a screen reader hears of the grid: a list called as the shown group, and in it an item for
// each icon, in the grid's order, with its name, place and state. An item can be launched and can
// open its menu.
//
// An item stands for an application, not for a place: it stays the same one while the grid is laid
// out anew, and is invalid while its application is not shown. Items are made when they are asked
// for and go with the list, which goes with its view. Nothing is made, and nothing announced, while
// no assistive technology is there.

#pragma once

#include <QAccessibleWidget>
#include <QHash>

#include <memory>

class OTApp;
class OTIconView;

class GridAccessible final : public QAccessibleWidget
{
public:
    // Makes every grid known to assistive technologies; once is enough, more does no harm.
    static void install();

    // To be called after the selection of a grid has changed: the item selected now is announced.
    static void selectionChanged(OTIconView *view);

    // To be called after a grid was filled anew, or with another group.
    static void contentChanged(OTIconView *view);

    // To be called after the user has moved an application: its new place is announced.
    static void placeChanged(OTIconView *view, const std::shared_ptr<OTApp> &app);

    explicit GridAccessible(OTIconView *view);
    ~GridAccessible() override;

    // Null once the view is gone.
    OTIconView *view() const;

    QString text(QAccessible::Text kind) const override;
    int childCount() const override;
    QAccessibleInterface *child(int index) const override;
    int indexOfChild(const QAccessibleInterface *child) const override;
    QAccessibleInterface *childAt(int x, int y) const override;
    QAccessibleInterface *focusChild() const override;

private:
    // Null without an application.
    QAccessibleInterface *itemOf(const std::shared_ptr<OTApp> &app) const;
    void forgetHiddenItems() const;

    // By the paths of the applications.
    mutable QHash<QString, QAccessible::Id> _items;
};
