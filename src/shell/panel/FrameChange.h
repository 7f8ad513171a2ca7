// Gives a window another size together with its content and its shape, so that no mixture of the
// old and the new is seen.
//
// A display changes the size of a window in its own time, and what is painted before or after that
// shows at the wrong size. So the content is laid out and drawn first, the display gets the picture
// together with the wish for the size, and the window paints itself only when it has that size.
// Where a display takes no pictures, or does not grant the size, the window is painted as usual.
// Frames are Qt's, y growing downwards.

#pragma once

#include <QObject>
#include <QRect>
#include <QRegion>
#include <QTimer>

#include <functional>

class OwnWindows;
class QWidget;

class FrameChange final : public QObject
{
    Q_OBJECT

public:
    // The shape of the window at a size; empty when it is not cut out.
    using Shape = std::function<QRegion(const QSize &)>;

    // The content is a child that fills the window and lays itself out when it is resized. All must
    // outlive this.
    FrameChange(QWidget &window, QWidget &content, OwnWindows &ownWindows, Shape shape);

    // The window has the frame at once as far as Qt knows.
    void setFrame(const QRect &frame);
    // Shows the window. One that is cut out is cut to nothing until unveil(), since window managers
    // fill a window that is still empty with a colour of theirs.
    void showVeiled();
    // Draws the content and shows it. Apart from showVeiled(), so that the window manager has
    // something to do meanwhile.
    void unveil();
    // Asks for the shape anew.
    void updateShape();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool giveAhead(const QRect &frame);
    void cutOut();
    void settle();

    QWidget &_window;
    QWidget &_content;
    OwnWindows &_ownWindows;
    Shape _shape;
    // Whether the display takes pictures, as far as is known.
    bool _areTaken = true;
    bool _isVeiled = false;
    // Runs while the display has a picture and the window is not painted.
    QTimer _waiting;
};
