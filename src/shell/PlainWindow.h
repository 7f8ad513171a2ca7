// A plain window around the grid, as large as the grid wants to be.

#pragma once

#include "grid/GridHost.h"

#include <QWidget>

#include <optional>

class OTAppManager;
class OTIconView;

class PlainWindow : public QWidget, public GridHost
{
    Q_OBJECT

public:
    // `largestGrid` bounds the grid; without it the screen does. The catalogue must outlive the
    // window.
    explicit PlainWindow(OTAppManager &appManager, std::optional<QSizeF> largestGrid = {});

    OTIconView &iconView() { return *_iconView; }
    QSizeF maxIconViewSize() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;
    void inputMethodEvent(QInputMethodEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void subviewDidResize(QObject *view);

    std::optional<QSizeF> _largestGrid;
    OTIconView *_iconView;
};
