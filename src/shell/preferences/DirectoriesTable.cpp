#include "shell/preferences/DirectoriesTable.h"

#include <QCursor>
#include <QDrag>
#include <QDropEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QPainter>
#include <QStyleOption>
#include <QStyledItemDelegate>

#include <algorithm>

namespace {

// What is no folder is dimmed, and still has a contrast of 4.5 to 1 on a plain ground. On that of
// the selection it would not have it.
constexpr float DimmedOpacity = 0.65F;

class FolderDelegate final : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    // Not when an item is measured: all of them are, and this looks at the disk.
    void paint(QPainter *painter, const QStyleOptionViewItem &option,
        const QModelIndex &index) const override
    {
        QStyleOptionViewItem shown = option;
        if (!index.data(OTArrayController::IsFolderRole).toBool()) {
            QColor color = shown.palette.color(QPalette::Text);
            color.setAlphaF(DimmedOpacity);
            shown.palette.setColor(QPalette::Text, color);
        }
        QStyledItemDelegate::paint(painter, shown, index);
    }
};

bool isTaken(const QMimeData &data, const OTArrayController &controller)
{
    const QStringList types = controller.mimeTypes();
    return std::any_of(types.cbegin(), types.cend(),
        [&data](const QString &type) { return data.hasFormat(type); });
}

} // namespace

DirectoriesTable::DirectoriesTable(OTArrayController &controller, QWidget *parent)
    : QListView(parent)
    , _controller(controller)
{
    setModel(&controller);
    delete selectionModel();
    setSelectionModel(&controller.selection());
    setItemDelegate(new FolderDelegate(this));
    setAccessibleName(tr("Folders to scan"));
    setSelectionMode(ExtendedSelection);
    setEditTriggers(NoEditTriggers);
    setHorizontalScrollMode(ScrollPerPixel);
    setDragEnabled(true);
    setAcceptDrops(true);
    // Qt's own would be beside the row that is meant.
    setDropIndicatorShown(false);
}

void DirectoriesTable::keyPressEvent(QKeyEvent *event)
{
    const bool isPlain = !(event->modifiers() & ~(Qt::KeypadModifier | Qt::ShiftModifier));
    if (isPlain && event->key() == Qt::Key_Delete) {
        Q_EMIT removalWanted();
    } else if (isPlain && (event->key() == Qt::Key_Insert || event->key() == Qt::Key_Plus)) {
        Q_EMIT additionWanted();
    } else if (event->modifiers() == Qt::AltModifier && event->key() == Qt::Key_Up) {
        _controller.moveSelected(OTArrayController::Direction::Up);
    } else if (event->modifiers() == Qt::AltModifier && event->key() == Qt::Key_Down) {
        _controller.moveSelected(OTArrayController::Direction::Down);
    } else {
        QListView::keyPressEvent(event);
    }
}

void DirectoriesTable::startDrag(Qt::DropActions)
{
    const QModelIndexList indexes = selectedIndexes();
    if (indexes.isEmpty()) {
        return;
    }
    auto *const drag = new QDrag(this);
    drag->setMimeData(_controller.mimeData(indexes));
    drag->setPixmap(pictureOf(indexes));
    drag->exec(Qt::CopyAction);
}

// Those that can be seen, as they lie.
QPixmap DirectoriesTable::pictureOf(const QModelIndexList &indexes) const
{
    QRegion region;
    for (const QModelIndex &index : indexes) {
        region += visualRect(index) & viewport()->rect();
    }
    const QRect bounds = region.boundingRect();
    QPixmap picture(bounds.size() * devicePixelRatioF());
    picture.setDevicePixelRatio(devicePixelRatioF());
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    for (const QRect &rect : region) {
        painter.drawPixmap(rect.topLeft() - bounds.topLeft(), viewport()->grab(rect));
    }
    return picture;
}

OTArrayController::DropOrigin DirectoriesTable::originOf(const QDropEvent &event) const
{
    return event.source() == this ? OTArrayController::DropOrigin::ThisTable
                                  : OTArrayController::DropOrigin::Elsewhere;
}

int DirectoriesTable::proposedRow(const QPoint &position) const
{
    const QRect first = visualRect(_controller.index(0));
    if (first.isValid() && position.y() < first.top() + first.height() / 3) {
        return -1;
    }
    const QModelIndex index = indexAt(position);
    return index.isValid() ? index.row() : _controller.rowCount();
}

void DirectoriesTable::dragEnterEvent(QDragEnterEvent *event)
{
    dragMoveEvent(event);
}

void DirectoriesTable::dragMoveEvent(QDragMoveEvent *event)
{
    // It scrolls near the edges; its own answer does not count.
    QListView::dragMoveEvent(event);
    if (!isTaken(*event->mimeData(), _controller)) {
        event->ignore();
        return;
    }
    const OTArrayController::Drop drop = _controller.validateDrop(
        originOf(*event), event->modifiers(), proposedRow(event->position().toPoint()));
    showDrop(drop.row);
    event->setDropAction(drop.operation);
    event->accept();
}

void DirectoriesTable::dragLeaveEvent(QDragLeaveEvent *event)
{
    QListView::dragLeaveEvent(event);
    showDrop({});
}

void DirectoriesTable::dropEvent(QDropEvent *event)
{
    QDragLeaveEvent leave;
    dragLeaveEvent(&leave);
    const OTArrayController::DropOrigin origin = originOf(*event);
    const OTArrayController::Drop drop = _controller.validateDrop(
        origin, event->modifiers(), proposedRow(event->position().toPoint()));
    const bool isDone =
        _controller.acceptDrop(*event->mimeData(), origin, event->modifiers(), drop.row);
    event->setDropAction(isDone ? drop.operation : Qt::IgnoreAction);
    event->setAccepted(isDone);
}

void DirectoriesTable::scrollContentsBy(int dx, int dy)
{
    QListView::scrollContentsBy(dx, dy);
    // Under a drag that rests near an edge no event tells that another row is there now.
    if (_dropRow) {
        const QPoint position = viewport()->mapFromGlobal(QCursor::pos());
        showDrop(
            _controller
                .validateDrop(OTArrayController::DropOrigin::ThisTable, {}, proposedRow(position))
                .row);
        viewport()->update();
    }
}

void DirectoriesTable::showDrop(std::optional<int> row)
{
    if (_dropRow != row) {
        _dropRow = row;
        viewport()->update();
    }
}

void DirectoriesTable::paintEvent(QPaintEvent *event)
{
    QListView::paintEvent(event);
    QPainter painter(viewport());
    if (_controller.rowCount() == 0) {
        painter.setPen(palette().color(QPalette::PlaceholderText));
        painter.drawText(viewport()->rect(), Qt::AlignCenter | Qt::TextWordWrap,
            tr("Drop folders here to search them for applications"));
    }
    if (_dropRow) {
        paintDrop(painter);
    }
}

void DirectoriesTable::paintDrop(QPainter &painter)
{
    const QRect above = visualRect(_controller.index(*_dropRow - 1));
    const QRect below = visualRect(_controller.index(*_dropRow));
    const int y = above.isValid() ? above.bottom() : below.isValid() ? below.top() : 0;
    QStyleOption option;
    option.initFrom(this);
    option.rect = QRect(0, y, viewport()->width(), 0);
    style()->drawPrimitive(QStyle::PE_IndicatorItemViewItemDrop, &option, &painter, this);
}
