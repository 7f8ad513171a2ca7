// A thin bar beside the group selector with the colours of the icons that are shown, in the order
// by colour: a window on it leaves the icons that look alike, and dims the others.
//
// The pointer takes the window along, and F6 gives the bar the arrow keys; once the pointer or the
// keys are elsewhere all is as it was. It is there in the order by colour alone, where the
// preferences want it and the panel has room for it. Points are the widget's own, with y growing
// downwards.

#pragma once

#include "grid/drawing/GatheredRepaint.h"
#include "icons/HueStrip.h"

#include <QPoint>
#include <QWidget>

#include <optional>

class OTAppManager;
class OTIconView;

class HueBar final : public QWidget
{
    Q_OBJECT

public:
    // Catalogue and grid must outlive the bar. It has no extent until layOut().
    HueBar(OTAppManager &appManager, OTIconView &iconView, QWidget *parent = nullptr);

    // Registers the preference of the bar. To be called once, before anything reads it.
    static void registerDefaults();

    // Stands at the right of the room in its parent, and is hidden where that is too narrow.
    void layOut(const QRect &room);

    // For the panel, which has the keyboard: whether the key was used. A key that was not ends what
    // the pointer has begun, as it is for the whole grid.
    bool handleKeyDown(const QKeyEvent &event);
    // All icons are as they were.
    void leave();

    // Of the icons that are shown.
    const HueStrip &strip();
    // The icon of the strip that the window stands on; -1 while there is no window.
    qsizetype index() const { return _window ? _index : -1; }
    bool hasKeys() const { return _hasKeys; }
    // Puts the window there.
    void moveTo(qsizetype index);
    // What the colour is called on which the window stands; empty without a window.
    QString colorName();

protected:
    void paintEvent(QPaintEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void enterEvent(QEnterEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    void preferenceDidChange(const QString &key);
    void contentDidChange();
    void showWhereFitting();
    void takeKeys();
    bool handleKeyWithKeys(const QKeyEvent &event);
    void goToIcon();
    void pointTo(const QPointF &point);
    QRectF track() const;
    QRectF thumb(const QRectF &track);

    OTIconView &_iconView;
    QRect _room;
    GatheredRepaint _repaint;
    HueStrip _strip;
    bool _isStale = true;
    int _group = -1;

    std::optional<HueWindow> _window;
    qsizetype _index = 0;
    bool _hasKeys = false;
    // Where the pointer was when it came: a panel that opens below it has not been pointed at.
    QPoint _enteredAt;
};
