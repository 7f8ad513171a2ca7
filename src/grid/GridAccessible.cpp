#include "grid/GridAccessible.h"

#include "catalogue/OTApp.h"
#include "grid/AccessibleItem.h"
#include "grid/OTIconView.h"
#include "grid/layout/GridGroups.h"
#include "support/Geometry.h"

#include <QCoreApplication>

namespace {

bool isSameCell(const Coords &one, const Coords &other)
{
    return one.row == other.row && one.col == other.col;
}

// An icon of the grid.
class GridItem final : public AccessibleItem
{
    Q_DECLARE_TR_FUNCTIONS(GridItem)

public:
    // The list owns the item.
    GridItem(const GridAccessible &list, AppRef app)
        : AccessibleItem(list)
        , _list(list)
        , _app(std::move(app))
    { }

    bool isValid() const override { return !coords().isEmpty(); }

    QString text(QAccessible::Text kind) const override;
    QRect rect() const override;
    QAccessible::Role role() const override { return QAccessible::ListItem; }
    QAccessible::State state() const override;

    QStringList actionNames() const override;
    void doAction(const QString &name) override;

    // -1 when it is not shown.
    int index() const;

private:
    // Empty when it is not shown.
    Coords coords() const { return _list.view() ? _list.view()->coordsOfApp(_app) : Coords(); }
    QString position() const;
    QString description() const;

    const GridAccessible &_list;
    const AppRef _app;
};

int GridItem::index() const
{
    const Coords own = coords();
    const QList<Coords> cells = own.isEmpty() ? QList<Coords>() : _list.view()->occupiedCells();
    for (int i = 0; i < int(cells.size()); ++i) {
        if (isSameCell(cells[i], own)) {
            return i;
        }
    }
    return -1;
}

QString GridItem::position() const
{
    return tr("%1 of %2", "place of an icon among all").arg(index() + 1).arg(_list.childCount());
}

// Not every reader tells the place among the items by itself.
QString GridItem::description() const
{
    QStringList parts { position() };
    const OTIconView *const view = _list.view();
    if (GridGroups::isFavourites(view->groupShown()) && view->gridLayout().hasBands()) {
        const Coords own = coords();
        const GridCell &cell = view->gridLayout().cellAt(own.row, own.col);
        parts.prepend(tr("place %1 in group %2").arg(cell.index + 1).arg(cell.bunch + 1));
    }
    if (const auto action = view->foundAction(_app)) {
        parts.append(action->title);
    }
    if (_list.view()->isAppMarkedNew(_app)) {
        parts.append(tr("new"));
    }
    if (_list.view()->isAppRunning(_app)) {
        parts.append(tr("running"));
    }
    if (_list.view()->isAppExcluded(_app)) {
        parts.append(tr("excluded"));
    }
    return parts.join(QStringLiteral(", "));
}

QString GridItem::text(QAccessible::Text kind) const
{
    if (!isValid()) {
        return {};
    }
    switch (kind) {
    case QAccessible::Name:
        return _app->displayName();
    case QAccessible::Value:
        return position();
    case QAccessible::Description:
        return description();
    default:
        return {};
    }
}

QRect GridItem::rect() const
{
    if (!isValid()) {
        return {};
    }
    const OTIconView *const view = _list.view();
    return Geometry::flipped(view->rectOfCoords(coords()), view->height())
        .toAlignedRect()
        .translated(view->mapToGlobal(QPoint(0, 0)));
}

QAccessible::State GridItem::state() const
{
    QAccessible::State state;
    if (!isValid()) {
        state.invalid = true;
        return state;
    }
    const OTIconView *const view = _list.view();
    state.focusable = true;
    state.selectable = true;
    state.selected = isSameCell(view->selectedCoords(), coords());
    // The view never has the keyboard itself, its window hands the keys on.
    state.focused = state.selected && view->isActiveWindow();
    state.invisible = !view->isVisible();
    // What the filter leaves out is dimmed, and Return does not launch it.
    state.disabled = view->isAppKeyFilteredOut(_app);
    return state;
}

QStringList GridItem::actionNames() const
{
    QStringList names { setFocusAction(), showMenuAction() };
    if (isValid() && !_list.view()->isAppKeyFilteredOut(_app)) {
        names.prepend(pressAction());
    }
    return names;
}

void GridItem::doAction(const QString &name)
{
    OTIconView *const view = _list.view();
    if (!isValid() || !actionNames().contains(name)) {
        return;
    }
    if (name == setFocusAction()) {
        view->selectCoordsByKeys(coords());
        return;
    }
    // Later, and where the icon is then: the screen reader waits for an answer, and would wait
    // until a menu is closed.
    const bool isMenu = name == showMenuAction();
    QMetaObject::invokeMethod(
        view,
        [view, isMenu, app = _app] {
            const Coords place = view->coordsOfApp(app);
            if (place.isEmpty()) {
                return;
            }
            if (isMenu) {
                view->openMenuAt(place);
            } else {
                view->commands().launchApp(view->appAtCoords(place));
            }
        },
        Qt::QueuedConnection);
}

QAccessibleInterface *gridInterface(const QString &, QObject *object)
{
    auto *const view = qobject_cast<OTIconView *>(object);
    return view ? new GridAccessible(view) : nullptr;
}

} // namespace

void GridAccessible::install()
{
    QAccessible::installFactory(gridInterface);
}

void GridAccessible::contentChanged(OTIconView *view)
{
    if (QAccessible::isActive()) {
        QAccessibleEvent order(view, QAccessible::ObjectReorder);
        QAccessible::updateAccessibility(&order);
        for (const auto changed : { QAccessible::NameChanged, QAccessible::DescriptionChanged }) {
            QAccessibleEvent text(view, changed);
            QAccessible::updateAccessibility(&text);
        }
    }
}

void GridAccessible::selectionChanged(OTIconView *view)
{
    if (!QAccessible::isActive()) {
        return;
    }
    const auto *const list =
        static_cast<const GridAccessible *>(QAccessible::queryAccessibleInterface(view));
    QAccessibleInterface *const item =
        list ? list->itemOf(view->appAtCoords(view->selectedCoords())) : nullptr;
    if (!item) {
        return;
    }
    QAccessibleEvent selected(item, QAccessible::Selection);
    QAccessible::updateAccessibility(&selected);
    if (view->isActiveWindow()) {
        QAccessibleEvent focused(item, QAccessible::Focus);
        QAccessible::updateAccessibility(&focused);
    }
}

void GridAccessible::placeChanged(OTIconView *view, const AppRef &app)
{
    if (!QAccessible::isActive()) {
        return;
    }
    const auto *const list =
        static_cast<const GridAccessible *>(QAccessible::queryAccessibleInterface(view));
    if (QAccessibleInterface *const item = list ? list->itemOf(app) : nullptr) {
        QAccessibleEvent moved(item, QAccessible::DescriptionChanged);
        QAccessible::updateAccessibility(&moved);
    }
}

GridAccessible::GridAccessible(OTIconView *view)
    : QAccessibleWidget(view, QAccessible::List)
{ }

GridAccessible::~GridAccessible()
{
    for (const QAccessible::Id item : std::as_const(_items)) {
        QAccessible::deleteAccessibleInterface(item);
    }
}

OTIconView *GridAccessible::view() const
{
    return qobject_cast<OTIconView *>(object());
}

QString GridAccessible::text(QAccessible::Text kind) const
{
    if (view() && kind == QAccessible::Name) {
        return GridGroups::titleOf(view()->groupShown());
    }
    if (view() && kind == QAccessible::Description && view()->isEmpty()) {
        return view()->emptyHint();
    }
    return QAccessibleWidget::text(kind);
}

int GridAccessible::childCount() const
{
    return view() ? int(view()->occupiedCells().size()) : 0;
}

QAccessibleInterface *GridAccessible::child(int index) const
{
    const QList<Coords> cells = view() ? view()->occupiedCells() : QList<Coords>();
    if (index < 0 || index >= cells.size()) {
        return nullptr;
    }
    if (_items.size() > cells.size()) {
        forgetHiddenItems();
    }
    return itemOf(view()->appAtCoords(cells[index]));
}

int GridAccessible::indexOfChild(const QAccessibleInterface *child) const
{
    const auto *const item = dynamic_cast<const GridItem *>(child);
    return item && item->parent() == this ? item->index() : -1;
}

QAccessibleInterface *GridAccessible::childAt(int x, int y) const
{
    if (!view()) {
        return nullptr;
    }
    const QPointF onWidget = view()->mapFromGlobal(QPointF(x, y));
    return itemOf(view()->appAtPoint(Geometry::flipped(onWidget, view()->height())));
}

QAccessibleInterface *GridAccessible::focusChild() const
{
    return view() && view()->isActiveWindow()
        ? itemOf(view()->appAtCoords(view()->selectedCoords()))
        : nullptr;
}

QAccessibleInterface *GridAccessible::itemOf(const AppRef &app) const
{
    if (!app) {
        return nullptr;
    }
    QAccessible::Id &id = _items[app->path()];
    if (id == 0) {
        id = QAccessible::registerAccessibleInterface(new GridItem(*this, app));
    }
    return QAccessible::accessibleInterface(id);
}

void GridAccessible::forgetHiddenItems() const
{
    _items.removeIf([](const auto &item) {
        const QAccessibleInterface *const shown = QAccessible::accessibleInterface(item.value());
        if (shown && shown->isValid()) {
            return false;
        }
        QAccessible::deleteAccessibleInterface(item.value());
        return true;
    });
}
