// What screen readers hear of a part of a widget that is no widget itself: one item in a list, or
// one tab in a row, that can be acted on and holds nothing.

#pragma once

#include <QAccessibleWidget>

class AccessibleItem : public QAccessibleInterface, public QAccessibleActionInterface
{
public:
    // The list owns the item.
    explicit AccessibleItem(const QAccessibleWidget &list)
        : _list(list)
    { }

    QObject *object() const override { return nullptr; }
    QWindow *window() const override { return _list.window(); }
    void *interface_cast(QAccessible::InterfaceType type) override
    {
        return type == QAccessible::ActionInterface
            ? static_cast<QAccessibleActionInterface *>(this)
            : nullptr;
    }

    QAccessibleInterface *parent() const override
    {
        return QAccessible::queryAccessibleInterface(_list.object());
    }
    QAccessibleInterface *child(int) const override { return nullptr; }
    QAccessibleInterface *childAt(int, int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface *) const override { return -1; }
    void setText(QAccessible::Text, const QString &) override { }
    QStringList keyBindingsForAction(const QString &) const override { return {}; }

private:
    const QAccessibleWidget &_list;
};
