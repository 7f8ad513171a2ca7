// The launcher panel: a floating window without a frame that holds the grid of icons, the place of
// the group selector, the close and the gear button, and a layer that lies over all of them.
//
// It takes the size that the grid asks for and keeps its centre meanwhile, stays on its screen,
// fades in and out, and slides out of the way and back during drags. Who shows and hides it, and
// when, is the controller's business. Frames are global, in points, with y growing upwards from the
// upper edge of the primary screen, which is 0: the screen lies below it.

#pragma once

#include "grid/GridDrags.h"
#include "grid/GridHost.h"
#include "platform/OwnWindows.h"
#include "shell/panel/PanelFrame.h"

#include <QElapsedTimer>
#include <QPointer>
#include <QRectF>
#include <QWidget>

#include <memory>
#include <optional>

class Desktop;
class EmptyHint;
class FrameChange;
class HueBar;
class OTAppManager;
class OTBkgndView;
class OTIconOverlayView;
class OTIconView;
class OTStatsControl;
class PanelButton;
class PanelResize;
class QScreen;
class WindowAnimation;

class OTWindow : public QWidget, public GridHost
{
    Q_OBJECT

public:
    enum class TaskBar { Listed, Skipped };

    // `largestGrid` bounds the grid; without it the screen does. Catalogue and desktop must outlive
    // the window.
    OTWindow(OTAppManager &appManager, Desktop &desktop, std::optional<QSizeF> largestGrid = {});
    ~OTWindow() override;

    // Registers the preferences of the panel's looks. To be called once, before anything reads
    // them.
    static void registerDefaults();
    // The group that a panel shows when it opens.
    static int groupToShowWhenWindowOpens();

    OTIconView &iconView() const { return *_iconView; }
    OTStatsControl &statsControl() const { return *_statsControl; }
    // Beside the group selector.
    HueBar &hueBar() const { return *_hueBar; }
    PanelButton &closeButton() const { return *_closeButton; }
    PanelButton &prefsButton() const { return *_prefsButton; }
    // Lies over the whole panel.
    OTIconOverlayView &overlay() const { return *_overlay; }
    // Where the group selector has its place, in the panel's own coordinates.
    QRect selectorRect() const;
    // Of the panel, so that the group selector can show its counts.
    int leastWidth() const;

    // Whether it is there to be used; a panel that is fading out is not.
    bool isShown() const;
    // Fades in on the screen of the pointer, centred unless it is there already, and takes the
    // keyboard.
    void show(const ActivationStamp &stamp = {});
    // Fades out. What was filtered and selected is forgotten.
    void hide() override;

    // Whether the panel has the keyboard without the program being active for it.
    bool isNonActivating() const { return _isNonActivating; }
    // Whether the user has dragged the panel, and it is more than a little away from the middle of
    // its screen. Where a window manager puts it by itself does not count.
    bool hasBeenMoved() const;
    // Whether keys and drags are for the grid: not while a dialog hangs on the panel.
    bool iconViewHasUserFocus() const override;
    bool isProgramActive() const override;
    void makeFrontProcess() override;
    void reactivateLastApp() override { Q_EMIT frontBackWanted(); }

    QSizeF maxIconViewSize() const override;
    // How long an animated change to another frame takes, in seconds.
    double animationResizeTime(const QRectF &newFrame) const;

    // Slides that get the panel out of the way of a drag, and back to where it was.
    void slideToCenter();
    void slideBack() override;
    void slideOnscreen() override;

    // Above ordinary windows, and among them again; this lasts over hiding and showing.
    void raise();
    void lower();
    // To be said before it is shown.
    void setTaskBar(TaskBar taskBar) { _taskBar = taskBar; }

    // As if the close button had been clicked.
    void performClose();
    // Clears the filter; asks to be closed when there is none.
    void cancelOperation();

    // The background as a picture in a number of pixels a point.
    QImage backgroundColorPatternImageOfSize(const QSizeF &size, qreal ratio) const;
    // The point of the panel under which a dialog on it hangs: the upper edge of the grid.
    QPoint sheetPosition() const;

    void mousePressed(QMouseEvent *event) override;
    void mouseReleased(QMouseEvent *event) override;

Q_SIGNALS:
    // The close button, or a key that stands for it, asks that the panel be hidden.
    void closeWanted();
    // The gear was clicked; and the key that opens the preferences was pressed.
    void prefsWanted();
    void preferencesWanted();
    void isNonActivatingChanged();
    // The application that was in front before is to have the front again.
    void frontBackWanted();
    // The main menu is asked for at a place of the screen.
    void menuWanted(const QPoint &position);
    // It has been shown, or hidden to the end.
    void shown();
    void hidden();

protected:
    void moveEvent(QMoveEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void changeEvent(QEvent *event) override;
    bool focusNextPrevChild(bool) override { return false; }
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;
    void inputMethodEvent(QInputMethodEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dragLeaveEvent(QDragLeaveEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    enum class Change { AtOnce, AsPreferred };

    void subviewDidResize(QObject *view);
    void changeFrame(const QRectF &frame, Change change);
    void screenParametersDidChange();
    void setNames();
    void makeWindow();
    void chooseScreen();
    void takeScreen(QScreen *screen);
    void takeScreenOfFrame();
    void compositingDidChange();
    void readAnimation();
    void readActivation();
    void updateColors();
    void layOutSubviews();
    void layOutGrid();
    void layOutHueBar();

    void insistOnPlace();
    bool isAnswer(const QPoint &corner);
    void takePlaceOfWindow();
    void setFrame(const QRectF &frame);
    QRectF visibleFrame() const;
    QRectF centredFrame() const;
    void slideTo(const QRectF &frame);
    bool isAwayFromCentre() const;
    void setLevel(OwnWindows::Level level);
    void dragTo(const QPoint &pointer);
    GridDrags::Info draggingInfo(const QDropEvent &event) const;
    Qt::DropAction actionOf(const QDropEvent &event);
    void dragLeft();

    Desktop &_desktop;
    std::optional<QSizeF> _largestGrid;
    // Holds all the others.
    OTBkgndView *_background;
    OTIconView *_iconView;
    OTStatsControl *_statsControl;
    HueBar *_hueBar;
    PanelButton *_closeButton;
    PanelButton *_prefsButton;
    EmptyHint *_emptyHint;
    OTIconOverlayView *_overlay;

    PanelMargins _margins;
    // Where the panel was before it slid away; empty when it has not.
    QRectF _movedFrame;
    bool _isNonActivating = false;
    bool _useCoreAnimation = false;
    TaskBar _taskBar = TaskBar::Listed;
    OwnWindows::Level _level;
    bool _isMovedByUser = false;
    // Where the panel was put last, by itself or by others; its window may still be on the way.
    QRectF _frame;
    // The corners, in Qt's coordinates, that it asked for of late. On its way to the last one a
    // window manager may go through the others.
    QList<QPoint> _askedFor;
    QElapsedTimer _sinceAsked;
    // About which it changes its size; pixels would let it wander by one and one more.
    QPointF _centre;
    // How often it still asks to be put there until it is shown anew: a window manager that has its
    // own will keeps it in the end.
    int _placingsLeft = 0;
    std::unique_ptr<WindowAnimation> _animation;
    std::unique_ptr<FrameChange> _frameChange;
    std::unique_ptr<PanelResize> _resize;
    QPointer<QScreen> _screen;

    // Where the pointer and the panel were when a button was pressed on the background.
    struct Drag
    {
        QPoint pointer;
        QPoint panel;
        bool isMoving = false;
    };
    std::optional<Drag> _drag;
};
