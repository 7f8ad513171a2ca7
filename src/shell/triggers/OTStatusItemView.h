// The program's status item, and what presses on it do: a short one performs the action, one that
// is held opens the menu, and so does the second button; what is dragged onto it performs the
// action at once. Where the desktop reports no presses, choosing the item performs the action. The
// menu opens beside the item where the desktop tells its place, at the pointer elsewhere.
//
// While folders are scanned the item shows how far that has come. It is there as long as this
// object.

#pragma once

#include "platform/ActivationStamp.h"

#include <QIcon>
#include <QImage>
#include <QObject>
#include <QTimer>

#include <functional>

class QMenu;
class QPoint;
class StatusItem;

class OTStatusItemView final : public QObject
{
    Q_OBJECT

public:
    using Action = std::function<void(const ActivationStamp &stamp)>;
    // OpensMenu is a plain item: every click opens the menu, nothing else happens, and there is no
    // progress.
    enum class Click { PerformsAction, OpensMenu };

    // The menu and the status item must outlive this. Nothing is shown when the program has come
    // without the item's picture.
    OTStatusItemView(StatusItem &statusItem, QMenu &menu, Action action, Click click);
    ~OTStatusItemView() override;

    // A black frame, 14 by 14 in the middle of 16 by 16, which a black bar of 12 fills from the
    // left by `step` parts of `count`; more or less than all of it counts as all or none. White
    // behind and around, to be seen on black. Null when `count` is less than 1.
    static QImage progressPicture(int step, int count);

    // Whether a press is held that opens the menu after half a second.
    bool isMenuPending() const { return _menuTimer.isActive(); }

private:
    void connectPresses();
    void mouseDown(const ActivationStamp &stamp, Qt::KeyboardModifiers modifiers);
    void mouseDragged(bool isInside);
    void mouseUp(bool isInside, const ActivationStamp &stamp);
    void draggingEntered(const ActivationStamp &stamp);
    void startMenuTimer();
    void openMenu();
    void popUpMenu(const QPoint &position);
    void setHighlighted(bool isHighlighted);
    void showProgressStep(int step, int count);
    void takeProgress();
    void redisplay();

    StatusItem &_statusItem;
    QMenu &_menu;
    const Action _action;
    const QIcon _image;
    const QIcon _altImage;
    QIcon _progressImage;
    QTimer _menuTimer;
    bool _shouldHiliteMenu = false;
    // Between a press and its release, unless the menu has opened.
    bool _isTracking = false;
    qint64 _shownIcon = _image.cacheKey();
    // Of the progress bar, and of the one that is shown; -1 for none.
    int _barWidth = -1;
    int _shownBarWidth = -1;
    // Runs after a progress picture was shown: trays take their time.
    QTimer _progressPause;
};
