// A dialog that hangs on another window, which waits for it.

#pragma once

#include <QDialog>
#include <QElapsedTimer>

#include <chrono>

class Sheet : public QDialog
{
    Q_OBJECT

public:
    // Modal on its parent.
    Sheet(const QString &title, QWidget *parent);

    // Under a point of the screen, as far as the screen allows.
    void showUnder(const QPoint &middleOfUpperEdge);
    // What the window manager does with it at first is no move of the user's.
    static constexpr std::chrono::milliseconds Settling { 700 };
    // Whether the user has moved it since it was shown.
    bool hasBeenMoved() const { return pos() != _place; }

Q_SIGNALS:
    // A modal dialog above this one has closed.
    void uncovered();

protected:
    bool event(QEvent *event) override;
    void moveEvent(QMoveEvent *event) override;

private:
    // Where it came to rest.
    QPoint _place;
    QElapsedTimer _sinceShown;
};
