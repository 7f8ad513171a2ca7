// How the windows of this program stand among those of others.
//
// The base class is a desktop without habits: it does what Qt does by itself, and knows
// what Qt knows.

#pragma once

#include "platform/ActivationStamp.h"

#include <QObject>

class QImage;
class QWidget;
class QWindow;

class OwnWindows : public QObject
{
    Q_OBJECT

public:
    enum class TaskBar { Listed, Skipped };
    enum class Level { Normal, Raised };

    explicit OwnWindows(QObject *parent = nullptr);

    // How a window is to stand once it is shown: on every desktop, and as given. To be said before
    // each time it is shown.
    virtual void setStanding(QWindow &window, TaskBar taskBar, Level level);
    // Raises a shown window above ordinary ones, or lets it be one of them again.
    virtual void setLevel(QWindow &window, Level level);
    // Brings a window that is shown, or is about to be, to the front and gives it the keyboard.
    virtual void activate(QWindow &window, const ActivationStamp &stamp);

    // Makes a shown window Qt's active one if it has the focus and is not. Qt 6.4 takes a window
    // that is hidden for inactive at once, but notices that it lost the focus only when the display
    // says so; one that is shown again before has kept the focus and stays inactive.
    static void restoreActivity(QWidget &window);

    // What became of the window that was in front before ours.
    enum class Former { Unknown, NotThere, InFront };
    // Gives the front back to the window that had it before ours: to that very window, and only
    // while the user can see it on the present desktop. NotThere when none of ours is in front,
    // when nothing was in front before, or when that window was closed, put away or left on another
    // desktop. Unknown where the desktop does not tell windows of other programs apart.
    virtual Former giveFrontBack();

    // The window of ours that is in front; null when none is. Asks the desktop, since Qt
    // believes itself out of front while another program has grabbed a key.
    virtual QWindow *activeWindow() const;

    // Whether keys go to this window. May be later than that it is named as the active one.
    virtual bool hasKeyboard(const QWindow &window) const;
    // Whether a button of the pointer is down, in whatever window it was pressed.
    virtual bool isPointerPressed() const;
    // Has a window show a picture from the moment on that it is shown or gets a frame of the
    // picture's size, until it paints. Where a display draws each step of a change on the screen,
    // the screen stays as it is meanwhile. False where a desktop cannot.
    virtual bool setNextContent(QWindow &window, const QImage &picture, const QRect &frame);
    // Ends that. To be called once the window has its frame.
    virtual void clearNextContent(QWindow &window);

    // Sends on at once what was asked of the display: Qt keeps it back until it has drawn
    // something.
    virtual void flush();

Q_SIGNALS:
    // Another window of ours is in front, or none any more.
    void activeWindowChanged();
};
