// The rows of the folders to scan on the screen: chosen by keys and pointer, dragged and dropped.
//
// A drop goes below the row under the pointer, below all rows from the empty space, and above all
// from the upper edge of the first; a line shows where. Rows dragged within the table move, with
// Option they are copied; the arrow keys move them as well, with Option. Other programs are only
// ever offered a copy: they would move the folder itself.

#pragma once

#include "shell/preferences/OTArrayController.h"

#include <QListView>

#include <optional>

class DirectoriesTable : public QListView
{
    Q_OBJECT

public:
    // The controller's selection is this view's. It must not go while the view is used.
    explicit DirectoriesTable(OTArrayController &controller, QWidget *parent = nullptr);

Q_SIGNALS:
    // By the Insert or the plus key.
    void additionWanted();
    // By the Delete key.
    void removalWanted();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void startDrag(Qt::DropActions supportedActions) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dragLeaveEvent(QDragLeaveEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void scrollContentsBy(int dx, int dy) override;

private:
    OTArrayController::DropOrigin originOf(const QDropEvent &event) const;
    int proposedRow(const QPoint &position) const;
    void showDrop(std::optional<int> row);
    void paintDrop(QPainter &painter);
    QPixmap pictureOf(const QModelIndexList &indexes) const;

    OTArrayController &_controller;
    // Above which row a drag would put what it carries, while there is one.
    std::optional<int> _dropRow;
};
