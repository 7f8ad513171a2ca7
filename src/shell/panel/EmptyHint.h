// What stands in the panel in place of the icons while the shown group has none: a sentence that
// says why, and what can be done about it.

#pragma once

#include <QColor>
#include <QLabel>

class OTAppManager;
class OTIconView;

class EmptyHint final : public QLabel
{
    Q_OBJECT

public:
    // Says what the grid has to say. Both must outlive it.
    EmptyHint(OTAppManager &appManager, OTIconView &iconView, QWidget *parent = nullptr);

    // To be called after the colours of the grid have changed.
    void updateColors();

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void updateText();

    OTIconView &_iconView;
    // Behind the text.
    QColor _plate = Qt::transparent;
};
