// A dialog that hangs on another window, which waits for it.

#pragma once

#include <QDialog>

#include <optional>

class Sheet : public QDialog
{
    Q_OBJECT

public:
    // Modal on its parent.
    Sheet(const QString &title, QWidget *parent);

    // Under a point of the screen, as far as the screen allows.
    void showUnder(const QPoint &middleOfUpperEdge);
    // Whether the user has moved it since it was shown.
    bool hasBeenMoved() const { return _place && *_place != pos(); }

Q_SIGNALS:
    // What lay above it and had to be answered first is gone.
    void uncovered();

protected:
    bool event(QEvent *event) override;

private:
    // Where it was when it first became the active window: the window manager has its say before.
    std::optional<QPoint> _place;
};
