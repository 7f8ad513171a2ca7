// A dialog that hangs on another window, which waits for it.

#pragma once

#include <QDialog>

class Sheet : public QDialog
{
    Q_OBJECT

public:
    // Modal on its parent.
    Sheet(const QString &title, QWidget *parent);

    // Under a point of the screen, as far as the screen allows.
    void showUnder(const QPoint &middleOfUpperEdge);
};
