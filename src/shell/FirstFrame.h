// Tells when the first frame of a start is on the screen, or that none is coming: the time for
// what the program needs but its first frame does not.

#pragma once

#include <QObject>
#include <QTimer>

class OTWindow;

class FirstFrame final : public QObject
{
    Q_OBJECT

public:
    // Milliseconds. How long a window manager may take to show the panel, and icons to fill it.
    static constexpr int LongestWait = 200;
    static constexpr int LongestFilling = 40;

    // The panel must outlive this.
    explicit FirstFrame(OTWindow &panel);

    // Begins to wait, once. Without a panel that is shown it is over with the next turn of the
    // event loop.
    void await();

Q_SIGNALS:
    // Once. The panel is drawn and its icons are loaded, or it was hidden before that, or one of
    // the waits ended.
    void passed();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void handlePaint();
    void pass();

    OTWindow &_panel;
    QTimer _wait;
    bool _isOver = false;
};
