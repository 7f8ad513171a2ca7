// The list of folders to scan, as rows that can be added, removed, moved and copied.
//
// The rows are the dictionaries of the preference "searchDirectories" that have a path. Every
// change is written to the preference at once, and what the preference becomes, here or elsewhere,
// is what the rows are. Items of the list that are no such dictionaries have no row, and keep their
// place in the list when it is written. A folder of the home folder is stored with a tilde.

#pragma once

#include <QAbstractListModel>
#include <QItemSelectionModel>
#include <QMap>
#include <QStringList>
#include <QVariantList>

#include <set>

class Items;
class UserDefaults;

class OTArrayController : public QAbstractListModel
{
    Q_OBJECT

public:
    // Row numbers, each once, lowest first.
    using IndexSet = std::set<int>;

    // Whether there is such a folder. What else is to be said of it are Qt's own roles.
    static constexpr int IsFolderRole = Qt::UserRole;

    // Of the data of a drag: the numbers of the rows, and their dictionaries, as property lists.
    static const QString &movedRowsType();
    static const QString &copiedRowsType();

    enum class DropOrigin { ThisTable, Elsewhere };
    struct Drop
    {
        Qt::DropAction operation = Qt::IgnoreAction;
        // What is dropped goes above this row, or below all.
        int row = 0;

        bool operator==(const Drop &) const = default;
    };

    // Both must outlive it.
    OTArrayController(UserDefaults &defaults, const Items &items, QObject *parent = nullptr);

    // The rows as the preference holds them.
    const QVariantList &arrangedObjects() const { return _rows; }
    QItemSelectionModel &selection() { return _selection; }
    // The selected row that was chosen last; -1 when there is none.
    int selectedRow() const;

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

    // Inserts the folders in their order and selects them. Links are resolved. A path that is
    // listed already is passed over, and so is one that no property list can hold, with a log line.
    // An index beyond an end counts as that end.
    void insertPaths(const QStringList &paths, int atIndex);
    // Moves the rows above the row that is at the index now, in their order.
    void moveObjectsInArrangedObjectsFromIndexes(const IndexSet &indexes, int toIndex);
    // Removes the selected rows and selects the one that follows them.
    void removeSelected();
    // Moves the selected rows above the one before them or below the one behind them. They lie
    // together then, and stay selected.
    enum class Direction { Up, Down };
    void moveSelected(Direction direction);

    // How many indexes of the set are less than the row.
    static int rowsAboveRow(int row, const IndexSet &inIndexSet);
    // Elements that are no integers are passed over.
    static IndexSet indexSetFromRows(const QVariantList &rows);

    // What a drag of rows carries: where they are, what they are, and of a single one the folder
    // for other programs. The caller owns it.
    QMimeData *mimeData(const QModelIndexList &indexes) const override;
    QStringList mimeTypes() const override;

    // What a drop onto or above the proposed row would do: it goes below that row, always.
    Drop validateDrop(DropOrigin origin, Qt::KeyboardModifiers modifiers, int proposedRow) const;
    // Takes the data in above the row and selects what came, even when that is listed already. From
    // elsewhere only applications and folders are taken, as the scan tells them. False when nothing
    // could be taken, and for a move when the dragged rows have changed meanwhile.
    bool acceptDrop(
        const QMimeData &data, DropOrigin origin, Qt::KeyboardModifiers modifiers, int row);

private:
    IndexSet selectedIndexes() const;
    void takeOver();
    void write(const QVariantList &rows);
    void select(int firstRow, qsizetype count);
    bool acceptMove(const QMimeData &data, int row);
    bool acceptCopy(const QMimeData &data, int row);
    bool acceptFiles(const QMimeData &data, int row);

    UserDefaults &_defaults;
    const Items &_items;
    QVariantList _rows;
    // What has no row, by its place in the list.
    QMap<qsizetype, QVariant> _withoutRow;
    QItemSelectionModel _selection { this };
};
