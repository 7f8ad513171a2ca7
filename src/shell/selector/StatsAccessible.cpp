#include "shell/selector/StatsAccessible.h"

#include "grid/AccessibleItem.h"

namespace {

class StatsTab final : public AccessibleItem
{
public:
    // The row owns the tab.
    StatsTab(const StatsAccessible &row, int index)
        : AccessibleItem(row)
        , _row(row)
        , _index(index)
    { }

    bool isValid() const override { return _row.control() != nullptr; }

    QString text(QAccessible::Text kind) const override
    {
        return isValid() && kind == QAccessible::Name ? _row.control()->longLabel(_index)
                                                      : QString();
    }
    QRect rect() const override;
    QAccessible::Role role() const override { return QAccessible::PageTab; }
    QAccessible::State state() const override;

    QStringList actionNames() const override { return { pressAction() }; }
    void doAction(const QString &name) override
    {
        if (isValid() && name == pressAction()) {
            _row.control()->selectButtonAtIndex(_index);
        }
    }

    int index() const { return _index; }

private:
    const StatsAccessible &_row;
    const int _index;
};

QRect StatsTab::rect() const
{
    if (!isValid()) {
        return {};
    }
    const OTStatsControl *const control = _row.control();
    const QRect shown = control->buttonRect(_index).toAlignedRect() & control->rect();
    return shown.translated(control->mapToGlobal(QPoint(0, 0)));
}

QAccessible::State StatsTab::state() const
{
    QAccessible::State state;
    if (!isValid()) {
        state.invalid = true;
        return state;
    }
    const OTStatsControl *const control = _row.control();
    state.selectable = true;
    state.selected = control->indexOfSelectedButton() == _index;
    state.disabled = !control->isButtonEnabled(_index);
    state.invisible = !control->isVisible();
    state.offscreen = rect().isEmpty();
    return state;
}

QAccessibleInterface *statsInterface(const QString &, QObject *object)
{
    auto *const control = qobject_cast<OTStatsControl *>(object);
    return control ? new StatsAccessible(control) : nullptr;
}

void announce(OTStatsControl *control, int index, QAccessible::Event kind)
{
    if (!QAccessible::isActive()) {
        return;
    }
    const QAccessibleInterface *const row = QAccessible::queryAccessibleInterface(control);
    if (QAccessibleInterface *const tab = row ? row->child(index) : nullptr) {
        QAccessibleEvent event(tab, kind);
        QAccessible::updateAccessibility(&event);
    }
}

} // namespace

void StatsAccessible::install()
{
    QAccessible::installFactory(statsInterface);
}

void StatsAccessible::selectionChanged(OTStatsControl *control)
{
    announce(control, control->indexOfSelectedButton(), QAccessible::Selection);
}

void StatsAccessible::nameChanged(OTStatsControl *control, int index)
{
    announce(control, index, QAccessible::NameChanged);
}

StatsAccessible::StatsAccessible(OTStatsControl *control)
    : QAccessibleWidget(control, QAccessible::PageTabList)
{ }

StatsAccessible::~StatsAccessible()
{
    for (const QAccessible::Id tab : _tabs) {
        if (tab != 0) {
            QAccessible::deleteAccessibleInterface(tab);
        }
    }
}

OTStatsControl *StatsAccessible::control() const
{
    return qobject_cast<OTStatsControl *>(object());
}

QAccessibleInterface *StatsAccessible::child(int index) const
{
    if (!control() || index < 0 || index >= childCount()) {
        return nullptr;
    }
    QAccessible::Id &id = _tabs[size_t(index)];
    if (id == 0) {
        id = QAccessible::registerAccessibleInterface(new StatsTab(*this, index));
    }
    return QAccessible::accessibleInterface(id);
}

int StatsAccessible::indexOfChild(const QAccessibleInterface *child) const
{
    const auto *const tab = dynamic_cast<const StatsTab *>(child);
    return tab && tab->parent() == this ? tab->index() : -1;
}

QAccessibleInterface *StatsAccessible::childAt(int x, int y) const
{
    return control() ? child(control()->indexOfButtonAt(control()->mapFromGlobal(QPointF(x, y))))
                     : nullptr;
}
