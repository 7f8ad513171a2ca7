#include "shell/Activation.h"

#include "platform/OwnWindows.h"
#include "shell/panel/OTWindow.h"

#include <QWindow>

#include <utility>

Activation::Activation(OwnWindows &ownWindows, const OTWindow &panel)
    : _ownWindows(ownWindows)
    , _panel(panel)
{
    _frontTimer.setSingleShot(true);
    connect(&_frontTimer, &QTimer::timeout, this, &Activation::frontDidNotCome);
    connect(
        &ownWindows, &OwnWindows::activeWindowChanged, this, &Activation::activeWindowDidChange);
    connect(&panel, &OTWindow::isNonActivatingChanged, this, &Activation::activeWindowDidChange);
}

bool Activation::isActive() const
{
    const QWindow *const front = _ownWindows.activeWindow();
    const bool isPanel = front && front == _panel.windowHandle();
    return front && !(isPanel && _panel.isNonActivating());
}

bool Activation::isInFront() const
{
    return _ownWindows.activeWindow() != nullptr;
}

bool Activation::hasBeenActiveFor(int milliseconds) const
{
    return _didBecomeActiveDate.isValid() && _didBecomeActiveDate.hasExpired(milliseconds);
}

void Activation::restartTime()
{
    if (_didBecomeActiveDate.isValid()) {
        _didBecomeActiveDate.start();
    }
}

void Activation::awaitFront(Loss loss)
{
    _isLossPostponed = loss == Loss::Reported;
    _frontTimer.start(FrontWait);
}

void Activation::stopAwaiting()
{
    _frontTimer.stop();
    _isLossPostponed = false;
}

bool Activation::isLossPostponed()
{
    _isLossPostponed = _isLossPostponed || _frontTimer.isActive();
    return _frontTimer.isActive();
}

void Activation::frontDidNotCome()
{
    if (std::exchange(_isLossPostponed, false)) {
        Q_EMIT willResignActive();
    }
}

void Activation::activeWindowDidChange()
{
    const bool isActiveNow = isActive();
    if (isActiveNow) {
        stopAwaiting();
    }
    if (isActiveNow == _isActive) {
        return;
    }
    _isActive = isActiveNow;
    if (isActiveNow) {
        Q_EMIT didBecomeActive();
        _didBecomeActiveDate.start();
    } else {
        Q_EMIT willResignActive();
        _didBecomeActiveDate.invalidate();
    }
}
