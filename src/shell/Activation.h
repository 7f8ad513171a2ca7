// Whether the program is active: while one of its windows is in front; a panel that does not
// activate it does not count.
//
// A window manager may report the end of an earlier activity after the panel was shown and before
// it has the focus. So a panel that has just been shown may wait for the focus, and a loss that is
// reported meanwhile counts only if the focus does not come.

#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

class OTWindow;
class OwnWindows;

class Activation final : public QObject
{
    Q_OBJECT

public:
    // How long the panel may wait for the focus, in milliseconds.
    static constexpr int FrontWait = 1000;

    // Both must outlive this.
    Activation(OwnWindows &ownWindows, const OTWindow &panel);

    bool isActive() const;
    // Whether a window of ours is in front, active or not.
    bool isInFront() const;
    // Whether the program has been active for longer than so many milliseconds.
    bool hasBeenActiveFor(int milliseconds) const;
    // Counts the time from now, if the program is active.
    void restartTime();

    enum class Loss { NotReported, Reported };
    void awaitFront(Loss loss);
    void stopAwaiting();
    // To be asked about a loss: true while the panel waits, the loss is reported again if the
    // focus does not come.
    bool isLossPostponed();

Q_SIGNALS:
    void didBecomeActive();
    void willResignActive();

private:
    void activeWindowDidChange();
    void frontDidNotCome();

    OwnWindows &_ownWindows;
    const OTWindow &_panel;
    bool _isActive = false;
    QTimer _frontTimer;
    bool _isLossPostponed = false;
    // Since the program became active; not valid while it is not.
    QElapsedTimer _didBecomeActiveDate;
};
