#include "shell/preferences/OTArrayController.h"

#include "catalogue/files/FolderWalk.h"
#include "grid/typing/ModifierKeys.h"
#include "platform/Items.h"
#include "shell/base/Log.h"
#include "support/UserDefaults.h"
#include "support/files/PropertyList.h"
#include "support/files/StandardPath.h"

#include <QFileInfo>
#include <QMimeData>
#include <QSet>
#include <QUrl>

#include <algorithm>
#include <iterator>

namespace {

constexpr QLatin1String SearchDirectories("searchDirectories");
constexpr QLatin1String Path("path");

// Empty for what is no folder of the list.
QString pathOf(const QVariant &object)
{
    const QVariant path = object.toMap().value(Path);
    return path.typeId() == QMetaType::QString ? path.toString() : QString();
}

// The one form in which folders are stored: links resolved, the home folder as a tilde.
QString storedForm(const QString &path)
{
    const QString standardized = standardizedPath(path);
    const QString resolved = QFileInfo(standardized).canonicalFilePath();
    const QString canonicalHome = QDir(QDir::homePath()).canonicalPath();
    return abbreviatedPath(
        abbreviatedPath(resolved.isEmpty() ? standardized : resolved), canonicalHome);
}

QVariantList listIn(const QMimeData &data, const QString &type)
{
    return PropertyList::fromData(data.data(type)).value_or(QVariant()).toList();
}

} // namespace

const QString &OTArrayController::movedRowsType()
{
    static const QString type = QStringLiteral("application/x-ortu-moved-rows");
    return type;
}

const QString &OTArrayController::copiedRowsType()
{
    static const QString type = QStringLiteral("application/x-ortu-copied-rows");
    return type;
}

OTArrayController::OTArrayController(UserDefaults &defaults, const Items &items, QObject *parent)
    : QAbstractListModel(parent)
    , _defaults(defaults)
    , _items(items)
{
    connect(&defaults, &UserDefaults::changed, this, [this](const QString &key) {
        if (key == SearchDirectories) {
            takeOver();
        }
    });
    takeOver();
}

int OTArrayController::selectedRow() const
{
    const QModelIndex current = _selection.currentIndex();
    if (_selection.isSelected(current)) {
        return current.row();
    }
    int row = -1;
    const QModelIndexList selected = _selection.selectedIndexes();
    for (const QModelIndex &index : selected) {
        row = std::max(row, index.row());
    }
    return row;
}

int OTArrayController::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(_rows.size());
}

QVariant OTArrayController::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const QString path = pathOf(_rows[index.row()]);
    if (role == Qt::DisplayRole) {
        return path;
    }
    if (role != IsFolderRole && role != Qt::ToolTipRole && role != Qt::AccessibleDescriptionRole) {
        return {};
    }
    const QFileInfo item(standardizedPath(path));
    if (role == IsFolderRole) {
        return item.isDir();
    }
    if (item.isDir()) {
        return {};
    }
    return item.exists() ? tr("This is not a folder. It is not searched for applications.")
                         : tr("This folder does not exist.");
}

Qt::ItemFlags OTArrayController::flags(const QModelIndex &index) const
{
    return index.isValid() ? Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsDragEnabled
            | Qt::ItemNeverHasChildren
                           : Qt::NoItemFlags;
}

// Makes the rows what the preference in force says. Rows at both ends that remain keep their
// selection.
void OTArrayController::takeOver()
{
    const QVariantList stored = _defaults.arrayForKey(SearchDirectories);
    QVariantList rows;
    _withoutRow.clear();
    for (qsizetype i = 0; i < stored.size(); ++i) {
        if (pathOf(stored[i]).isEmpty()) {
            _withoutRow.insert(i, stored[i]);
        } else {
            rows.append(stored[i]);
        }
    }
    const auto front = std::mismatch(_rows.cbegin(), _rows.cend(), rows.cbegin(), rows.cend());
    const auto first = int(front.first - _rows.cbegin());
    const auto back = std::mismatch(_rows.crbegin(), std::make_reverse_iterator(front.first),
        rows.crbegin(), std::make_reverse_iterator(front.second));
    const auto oldEnd = int(back.first.base() - _rows.cbegin());
    const auto newEnd = int(back.second.base() - rows.cbegin());
    if (first < oldEnd) {
        beginRemoveRows({}, first, oldEnd - 1);
        _rows.remove(first, oldEnd - first);
        endRemoveRows();
    }
    if (first < newEnd) {
        beginInsertRows({}, first, newEnd - 1);
        _rows = rows;
        endInsertRows();
    }
}

// The rows follow when the preference tells that it has changed.
void OTArrayController::write(const QVariantList &rows)
{
    QVariantList list = rows;
    for (auto item = _withoutRow.cbegin(); item != _withoutRow.cend(); ++item) {
        list.insert(std::min(item.key(), list.size()), item.value());
    }
    _defaults.setObject(SearchDirectories, list);
}

void OTArrayController::select(int firstRow, qsizetype count)
{
    const QModelIndex last = index(firstRow + int(count) - 1);
    _selection.setCurrentIndex(last, QItemSelectionModel::NoUpdate);
    _selection.select({ index(firstRow), last }, QItemSelectionModel::ClearAndSelect);
}

void OTArrayController::insertPaths(const QStringList &paths, int atIndex)
{
    QSet<QString> present;
    for (const QVariant &row : std::as_const(_rows)) {
        present.insert(pathOf(row));
    }
    QVariantList inserted;
    for (const QString &path : paths) {
        const QString folder = storedForm(path);
        if (folder.isEmpty() || present.contains(folder)) {
            continue;
        }
        if (!PropertyList::canHold(folder)) {
            qCWarning(lcShell, "cannot list %s: no property list can hold its name",
                qUtf8Printable(folder));
            continue;
        }
        present.insert(folder);
        inserted.append(QVariantMap { { Path, folder } });
    }
    if (inserted.isEmpty()) {
        return;
    }
    const int row = std::clamp(atIndex, 0, rowCount());
    write(_rows.mid(0, row) + inserted + _rows.mid(row));
    select(row, inserted.size());
}

void OTArrayController::moveObjectsInArrangedObjectsFromIndexes(
    const IndexSet &indexes, int toIndex)
{
    QVariantList rows = _rows;
    int target = std::clamp(toIndex, 0, rowCount());
    int offset = 0;
    for (auto index = indexes.crbegin(); index != indexes.crend(); ++index) {
        if (*index < 0 || *index >= rowCount()) {
            continue;
        }
        // Each row from below that went above the target has pushed this one down.
        const int from = *index < target ? *index : *index + offset;
        if (*index < target) {
            --target;
        } else {
            ++offset;
        }
        rows.move(from, target);
    }
    write(rows);
}

OTArrayController::IndexSet OTArrayController::selectedIndexes() const
{
    IndexSet indexes;
    const QModelIndexList selected = _selection.selectedIndexes();
    for (const QModelIndex &index : selected) {
        indexes.insert(index.row());
    }
    return indexes;
}

void OTArrayController::moveSelected(Direction direction)
{
    const IndexSet indexes = selectedIndexes();
    if (indexes.empty()) {
        return;
    }
    const int target = direction == Direction::Up ? std::max(*indexes.cbegin() - 1, 0)
                                                  : std::min(*indexes.crbegin() + 2, rowCount());
    moveObjectsInArrangedObjectsFromIndexes(indexes, target);
    select(target - rowsAboveRow(target, indexes), qsizetype(indexes.size()));
}

void OTArrayController::removeSelected()
{
    const IndexSet indexes = selectedIndexes();
    if (indexes.empty()) {
        return;
    }
    QVariantList rows = _rows;
    for (auto index = indexes.crbegin(); index != indexes.crend(); ++index) {
        rows.removeAt(*index);
    }
    write(rows);
    if (rowCount() > 0) {
        const int following = *indexes.crbegin() + 1 - int(indexes.size());
        select(std::min(following, rowCount() - 1), 1);
    }
}

int OTArrayController::rowsAboveRow(int row, const IndexSet &inIndexSet)
{
    return int(std::distance(inIndexSet.cbegin(), inIndexSet.lower_bound(row)));
}

OTArrayController::IndexSet OTArrayController::indexSetFromRows(const QVariantList &rows)
{
    IndexSet indexes;
    for (const QVariant &row : rows) {
        if (row.typeId() == QMetaType::LongLong || row.typeId() == QMetaType::Int) {
            indexes.insert(row.toInt());
        }
    }
    return indexes;
}

QStringList OTArrayController::mimeTypes() const
{
    return { copiedRowsType(), movedRowsType(), QStringLiteral("text/uri-list") };
}

QMimeData *OTArrayController::mimeData(const QModelIndexList &indexes) const
{
    IndexSet dragged;
    for (const QModelIndex &index : indexes) {
        dragged.insert(index.row());
    }
    QVariantList numbers;
    QVariantList objects;
    for (const int row : dragged) {
        numbers.append(row);
        objects.append(_rows[row]);
    }
    auto *const data = new QMimeData;
    data->setData(movedRowsType(), PropertyList::toXml(numbers));
    data->setData(copiedRowsType(), PropertyList::toXml(objects));
    if (objects.size() == 1) {
        data->setUrls({ QUrl::fromLocalFile(standardizedPath(pathOf(objects.first()))) });
    }
    return data;
}

OTArrayController::Drop OTArrayController::validateDrop(
    DropOrigin origin, Qt::KeyboardModifiers modifiers, int proposedRow) const
{
    const bool isMove = origin == DropOrigin::ThisTable && !ModifierKeys::of(modifiers).option;
    return { isMove ? Qt::MoveAction : Qt::CopyAction,
        std::clamp(proposedRow, -1, rowCount() - 1) + 1 };
}

bool OTArrayController::acceptDrop(
    const QMimeData &data, DropOrigin origin, Qt::KeyboardModifiers modifiers, int row)
{
    const int target = std::clamp(row, 0, rowCount());
    if (origin == DropOrigin::Elsewhere) {
        return acceptFiles(data, target);
    }
    return ModifierKeys::of(modifiers).option ? acceptCopy(data, target) : acceptMove(data, target);
}

bool OTArrayController::acceptMove(const QMimeData &data, int row)
{
    const IndexSet indexes = indexSetFromRows(listIn(data, movedRowsType()));
    // The preference may have changed under the drag; other rows would be moved then.
    QVariantList rows;
    for (const int index : indexes) {
        rows.append(_rows.value(index));
    }
    if (indexes.empty() || rows != listIn(data, copiedRowsType())) {
        return false;
    }
    moveObjectsInArrangedObjectsFromIndexes(indexes, row);
    select(row - rowsAboveRow(row, indexes), rows.size());
    return true;
}

bool OTArrayController::acceptCopy(const QMimeData &data, int row)
{
    QVariantList copies = listIn(data, copiedRowsType());
    copies.removeIf([](const QVariant &object) { return pathOf(object).isEmpty(); });
    if (copies.isEmpty()) {
        return false;
    }
    write(_rows.mid(0, row) + copies + _rows.mid(row));
    select(row, copies.size());
    return true;
}

bool OTArrayController::acceptFiles(const QMimeData &data, int row)
{
    QStringList paths;
    const QList<QUrl> urls = data.urls();
    for (const QUrl &url : urls) {
        // The desktop would follow a link whose path ends in a slash.
        const QString path = url.isLocalFile() ? standardizedPath(url.toLocalFile()) : QString();
        const QString name = path.mid(path.lastIndexOf(QLatin1Char('/')) + 1);
        if (!path.isEmpty()
            && FolderWalk::classified(_items.flagsOf(path), name) != FolderWalk::ItemKind::Other) {
            paths.append(path);
        }
    }
    insertPaths(paths, row);
    return !paths.isEmpty();
}
